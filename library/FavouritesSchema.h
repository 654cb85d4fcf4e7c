// SPDX-License-Identifier: GPL-3.0-or-later
// The favourites store's names, the query of a plain listing, the log lines opening it writes and the key of
// the favourites copy: shared by FavourManager and lumaro-cli, which answers `fav list`, `fav add` and
// `fav remove` itself without Qt and must print what lumaro-cli-light would.
#pragma once

#include <string>
#include <string_view>

namespace lumaro::library {

struct FavouritesSchema
{
    static constexpr std::string_view databaseName = "fav.db";
    static constexpr std::string_view table = "favourites";
    // Made on open when missing (stores older than it).
    static constexpr std::string_view nameIndex = "idx_file_name";
    static constexpr std::string_view tableQuery =
        "SELECT name FROM sqlite_master WHERE type='table' AND name=?;";
    static constexpr std::string_view indexQuery =
        "SELECT name FROM sqlite_master WHERE type='index' AND name=?;";
    // The marked pictures' paths, newest change first.
    static constexpr std::string_view favouritePathsQuery =
        "SELECT file_path FROM favourites WHERE is_favour = 1 ORDER BY updated_at DESC;";

    // The rows without a path (`fav audit`), and the line that counts them.
    static constexpr std::string_view emptyPathCountQuery =
        "SELECT COUNT(*) FROM favourites WHERE file_path IS NULL OR file_path = '';";
    static std::string emptyPathCountLog(long long count)
    {
        return "📊 " + std::to_string(count) + " 条无效收藏记录（file_path 为空）";
    }
    // The marked pictures' rows, newest change first (after "SELECT <every column> FROM favourites").
    static constexpr std::string_view favouritesClause = "WHERE is_favour = 1 ORDER BY updated_at DESC;";

    // The setting that makes each new favourite copied into a folder of favourites (FavourCopier).
    static constexpr std::string_view copyEnabledKey = "LMR_FlowFavCopyEnabled";

    static constexpr std::string_view databaseLogTag = "LocalDatabaseManager";
    static constexpr std::string_view openedLog = "✅ 数据库已打开: ";
    static constexpr std::string_view favouritesLogTag = "FavourManager";
    static constexpr std::string_view tableExistsLog = "✅ 收藏表已存在";
    // After a picture's type was cleared (`fav type none`), or could not be.
    static constexpr std::string_view typeClearedLog = "✅ 收藏类型已清除";
    static constexpr std::string_view typeClearFailedLog = "❌ 清除收藏类型失败";
};

} // namespace lumaro::library
