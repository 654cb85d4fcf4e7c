// SPDX-License-Identifier: GPL-3.0-or-later
// The favourites store as lumaro-cli finds it without Qt: where it lies, and the lines lumaro-cli-light logs
// when it opens a store that is set up.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lumaro::cli {

// The store's path when the data folder is named plainly (platform::XdgHomes); nullopt for the forms only Qt
// settles.
std::optional<std::string> plainFavouritesPath();
// "LocalDatabaseManager - ✅ 数据库已打开: PATH" and "FavourManager - ✅ 收藏表已存在", each on its line.
std::string openedStoreLogLines(const std::string& databasePath);

// A reading subcommand's options.
struct FavReading
{
    bool quiet = false;
    bool json = false;
};
// The words after "fav" when they are `subcommand` and at most -q/--quiet and --json; nullopt otherwise.
std::optional<FavReading> plainFavReading(int count, char* words[], std::string_view subcommand);

} // namespace lumaro::cli
