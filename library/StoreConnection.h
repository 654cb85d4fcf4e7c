// SPDX-License-Identifier: GPL-3.0-or-later
// How every connection to Lumaro's SQLite stores is set up: in the window, in lumaro-cli-light, and in
// lumaro-cli, which reads the favourites without Qt. One place, so that a reader never sees a store in a mode
// the writers did not leave it in.
#pragma once

struct sqlite3;

namespace lumaro::library {

class StoreConnection
{
public:
    // How long a statement waits for another process's write to end before it fails as busy.
    static constexpr int defaultBusyTimeoutMs = 5000;

    // Before the process's first sqlite3_open_v2.
    static void takeCachePagesWhenNeeded();
    // Extended result codes, the busy timeout and the store's pragmas on a freshly opened `db`. SQLite reads
    // the file only now: false (sqlite3_errmsg says why) for a file that is not a database, before anything
    // was written to it.
    static bool configure(sqlite3* db, int busyTimeoutMs);
};

} // namespace lumaro::library
