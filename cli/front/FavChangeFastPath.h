// SPDX-License-Identifier: GPL-3.0-or-later
// `lumaro-cli fav add|remove|type TYPE PATH... [-q]` without loading Qt: the marks changed through the store's
// own rule (library::FavourTable), with lumaro-cli-light's log lines and messages.
#pragma once

#include <optional>

namespace lumaro::cli {

class FavChangeFastPath
{
public:
    // Changes the marks and returns the exit code when the words after "fav" are "add", "remove" or "type"
    // with a TYPE named in ASCII (or "none"), paths and at most -q/--quiet and --json; every path is UTF-8 and, where the
    // pictures become favourites (add, a type), names something that is not a folder, and the favourites copy
    // is not switched on; and the store, at a plainly named data folder, is set up and intact. nullopt, with nothing printed and nothing written, for anything else: lumaro-cli-light then
    // answers and words what is wrong.
    static std::optional<int> run(int count, char* words[]);
};

} // namespace lumaro::cli
