// SPDX-License-Identifier: GPL-3.0-or-later
// The favourites' paths as a plain `fav list` prints them, read without Qt, for lumaro-cli.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumaro::library {

class FavouritePathReader
{
public:
    // The paths' stored bytes, newest change first, read through a connection set up as every writer's is.
    // Only a store as FavourManager::open leaves it is read: nullopt when the file is missing or is no
    // database, when a statement fails, or when the table or an index that opening would make is missing.
    static std::optional<std::vector<std::string>> read(const std::string& databasePath);
};

} // namespace lumaro::library
