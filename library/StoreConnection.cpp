// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/StoreConnection.h"

#include <mutex>

#include <sqlite3.h>

namespace lumaro::library {

void StoreConnection::takeCachePagesWhenNeeded()
{
    // SQLite sets up twenty pages of cache for each connection in one block and writes into every one of them
    // before the first read; the favourites store is a few pages, and that block was a tenth of the page
    // faults of a whole `lumaro-cli fav add`. Pages are then taken when needed. Process-wide, so set before
    // SQLite starts; refused harmlessly when something else started it first.
    static std::once_flag once;
    std::call_once(once, [] { sqlite3_config(SQLITE_CONFIG_PAGECACHE, nullptr, 0, 0); });
}

bool StoreConnection::configure(sqlite3* db, int busyTimeoutMs)
{
    sqlite3_extended_result_codes(db, 1);
    sqlite3_busy_timeout(db, busyTimeoutMs);
    // With the write-ahead log, NORMAL syncs at checkpoints, not at every commit: the store still cannot be
    // damaged, and only a toggle of the last moments before a power cut can be lost. Each `fav add` paid two
    // syncs more than that, and each toggle in the window one.
    for (const char* pragma :
         {"PRAGMA foreign_keys = ON;", "PRAGMA journal_mode = WAL;", "PRAGMA synchronous = NORMAL;"}) {
        if (sqlite3_exec(db, pragma, nullptr, nullptr, nullptr) != SQLITE_OK)
            return false;
    }
    return true;
}

} // namespace lumaro::library
