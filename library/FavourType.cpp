// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourType.h"

namespace lumaro::library {

QString storedText(FavourType type)
{
    const std::string_view text = storedTypeText(type);
    return QString::fromLatin1(text.data(), qsizetype(text.size()));
}

QString caseName(FavourType type)
{
    return storedText(type).toLower();
}

std::optional<FavourType> favourTypeFromText(const QString& text)
{
    for (const FavourType type : allFavourTypes) {
        if (storedText(type) == text)
            return type;
    }
    for (const FavourType type : allFavourTypes) {
        if (storedText(type).compare(text, Qt::CaseInsensitive) == 0)
            return type;
    }
    return std::nullopt;
}

} // namespace lumaro::library
