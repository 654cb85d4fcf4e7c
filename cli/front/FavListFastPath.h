// SPDX-License-Identifier: GPL-3.0-or-later
// `lumaro-cli fav list [-q] [--json]` without loading Qt: the favourites printed from the store's own queries
// (library::FavouritePathReader; library::FavourTable for the records as JSON), with lumaro-cli-light's
// escaping, JSON and log lines.
#pragma once

#include <optional>

namespace lumaro::cli {

class FavListFastPath
{
public:
    // Prints the favourites and returns the exit code when the words after "fav" are "list" and at most
    // -q/--quiet and --json, the data folder is named plainly (platform::XdgHomes) and the store there reads as
    // FavourManager leaves it (for --json: paths in UTF-8, types in their stored spelling). nullopt, with
    // nothing printed, for anything else (other subcommands, a missing, new or damaged store):
    // lumaro-cli-light then answers, makes what is missing and says so.
    static std::optional<int> run(int count, char* words[]);
};

} // namespace lumaro::cli
