// SPDX-License-Identifier: GPL-3.0-or-later
// `lumaro-cli fav audit [-q] [--json]` without loading Qt: the records without a path counted and the
// favourites whose file is gone named, by the store's own queries (library::FavouritesSchema,
// library::FavourTable), with lumaro-cli-light's output and log lines.
#pragma once

#include <optional>

namespace lumaro::cli {

class FavAuditFastPath
{
public:
    // Prints the audit and returns the exit code when the words after "fav" are "audit" and at most
    // -q/--quiet and --json, the data folder is named plainly and the store there reads as FavourManager
    // leaves it, and every favourite's path is UTF-8. nullopt, with nothing printed, for anything else
    // (--clean, which removes records, included): lumaro-cli-light then answers.
    static std::optional<int> run(int count, char* words[]);
};

} // namespace lumaro::cli
