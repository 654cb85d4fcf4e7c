// SPDX-License-Identifier: GPL-3.0-or-later
// `lumaro-cli fav list [-q]` without loading Qt: the favourites printed from the store's own query
// (library::FavouritePathReader), with lumaro-cli-light's escaping and log lines.
#pragma once

#include <optional>

namespace lumaro::cli {

class FavListFastPath
{
public:
    // Prints the favourites and returns the exit code when the words after "fav" are "list" and at most
    // -q/--quiet, the data folder is named plainly (platform::XdgHomes) and the store there reads as
    // FavourManager leaves it. nullopt, with nothing printed, for anything else (--json, other subcommands, a
    // missing, new or damaged store): lumaro-cli-light then answers, makes what is missing and says so.
    static std::optional<int> run(int count, char* words[]);
};

} // namespace lumaro::cli
