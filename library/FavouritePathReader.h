// SPDX-License-Identifier: GPL-3.0-or-later
// The favourites' paths as a plain `fav list` prints them, read without Qt, for lumaro-cli.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace lumaro::library {

class FavouritePathReader
{
public:
    // Hands each path's stored bytes to `path`, newest change first, read through a connection set up as
    // every writer's is. Only a store as FavourManager::open leaves it is read: false, before any path was
    // handed over, when the file is missing or is no database, or when the table or an index that opening
    // would make is missing; false also when reading fails part-way (what was handed over is then not the
    // whole list).
    static bool readEach(const std::string& databasePath,
                         const std::function<void(std::string_view path)>& path);
};

} // namespace lumaro::library
