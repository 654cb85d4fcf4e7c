// SPDX-License-Identifier: GPL-3.0-or-later
// The kinds a favourite can be marked with, and the text each is stored as in the favour_type column.
#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <optional>

namespace lumaro::library {

// Stored texts: grade-like marks are written in capitals ("NEXT", "SSS", "S", "A", "HHH", "H", "NICE"), the
// picture-symbol marks in lower case ("heart", "diamond", "grass", "black"). `next`, `s`, `a` and `h` follow
// the grade spelling because they sit on the same scale as "SSS", "HHH" and "NICE" and are shown as the same
// kind of text badge.
enum class FavourType { next, sss, s, a, heart, diamond, grass, black, hhh, h, nice };

inline constexpr std::array<FavourType, 11> allFavourTypes{
    FavourType::next,    FavourType::sss,   FavourType::s,     FavourType::a,   FavourType::heart, FavourType::diamond,
    FavourType::grass,   FavourType::black, FavourType::hhh,   FavourType::h,   FavourType::nice};

QString storedText(FavourType type);
// The case name as written in code and on the command line ("sss", "heart").
QString caseName(FavourType type);
// Exact stored text first; a differently-cased stored text or a case name is accepted too, so rows edited by
// hand still read. Anything else is nullopt.
std::optional<FavourType> favourTypeFromText(const QString& text);

} // namespace lumaro::library
