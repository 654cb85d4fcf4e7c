// SPDX-License-Identifier: GPL-3.0-or-later
// One row of the favourites table.
#pragma once

#include "library/FavourType.h"

#include <QString>

#include <optional>

namespace lumaro::library {

// Dates are seconds since 1970-01-01 UTC (what platform::systemSeconds() gives and SQLite's 'unixepoch'
// modifier reads), stored as REAL.
struct FavourRecord
{
    qint64 id = 0;
    QString filePath;
    QString fileName;
    bool isFavour = false;
    std::optional<FavourType> favourType;
    double createdAt = 0;
    double updatedAt = 0;

    bool operator==(const FavourRecord&) const = default;
};

} // namespace lumaro::library
