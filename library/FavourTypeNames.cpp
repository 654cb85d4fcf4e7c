// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourTypeNames.h"

#include <algorithm>

namespace lumaro::library {

namespace {

char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

} // namespace

std::optional<FavourType> favourTypeFromAscii(std::string_view text)
{
    for (const FavourType type : allFavourTypes) {
        if (storedTypeText(type) == text)
            return type;
    }
    for (const FavourType type : allFavourTypes) {
        const std::string_view stored = storedTypeText(type);
        if (std::ranges::equal(stored, text, [](char a, char b) { return asciiLower(a) == asciiLower(b); }))
            return type;
    }
    return std::nullopt;
}

} // namespace lumaro::library
