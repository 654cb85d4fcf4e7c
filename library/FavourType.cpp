// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourType.h"

namespace lumaro::library {

QString storedText(FavourType type)
{
    switch (type) {
    case FavourType::next: return QStringLiteral("NEXT");
    case FavourType::sss: return QStringLiteral("SSS");
    case FavourType::s: return QStringLiteral("S");
    case FavourType::a: return QStringLiteral("A");
    case FavourType::heart: return QStringLiteral("heart");
    case FavourType::diamond: return QStringLiteral("diamond");
    case FavourType::grass: return QStringLiteral("grass");
    case FavourType::black: return QStringLiteral("black");
    case FavourType::hhh: return QStringLiteral("HHH");
    case FavourType::h: return QStringLiteral("H");
    case FavourType::nice: return QStringLiteral("NICE");
    }
    return {};
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
