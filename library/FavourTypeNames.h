// SPDX-License-Identifier: GPL-3.0-or-later
// The kinds a favourite can be marked with and the text each is stored as in the favour_type column, without
// Qt: FavourType.h answers the same in QStrings, and lumaro-cli's front end reads `fav type` through this.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace lumaro::library {

// Stored texts: grade-like marks are written in capitals ("NEXT", "SSS", "S", "A", "HHH", "H", "NICE"), the
// picture-symbol marks in lower case ("heart", "diamond", "grass", "black"). `next`, `s`, `a` and `h` follow
// the grade spelling because they sit on the same scale as "SSS", "HHH" and "NICE" and are shown as the same
// kind of text badge.
enum class FavourType { next, sss, s, a, heart, diamond, grass, black, hhh, h, nice };

inline constexpr std::array<FavourType, 11> allFavourTypes{
    FavourType::next,    FavourType::sss,   FavourType::s,     FavourType::a,   FavourType::heart, FavourType::diamond,
    FavourType::grass,   FavourType::black, FavourType::hhh,   FavourType::h,   FavourType::nice};

inline constexpr std::string_view storedTypeText(FavourType type)
{
    constexpr std::array<std::string_view, 11> texts{"NEXT",  "SSS",   "S",   "A", "heart", "diamond",
                                                     "grass", "black", "HHH", "H", "NICE"};
    return texts[size_t(type)];
}

// The stored text, or one spelt in other ASCII capitals. Anything else, non-ASCII letters included (which
// Qt's case folding may still match), is nullopt.
std::optional<FavourType> favourTypeFromAscii(std::string_view text);

} // namespace lumaro::library
