// SPDX-License-Identifier: GPL-3.0-or-later
// The kinds a favourite can be marked with (FavourTypeNames.h), and the text each is stored as, in QStrings.
#pragma once

#include "library/FavourTypeNames.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::library {

QString storedText(FavourType type);
// The case name as written in code and on the command line ("sss", "heart").
QString caseName(FavourType type);
// Exact stored text first; a differently-cased stored text or a case name is accepted too, so rows edited by
// hand still read. Anything else is nullopt.
std::optional<FavourType> favourTypeFromText(const QString& text);

} // namespace lumaro::library
