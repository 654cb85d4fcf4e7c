// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/FavListFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/FavStoreAccess.h"
#include "cli/front/LineEscape.h"
#include "cli/front/WriteAll.h"

#include "library/FavouritePathReader.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace lumaro::cli {

namespace {

// nullopt unless the words are "list" and quiet options; otherwise whether the log lines are hidden.
std::optional<bool> plainListQuiet(int count, char* words[])
{
    bool list = false;
    bool quiet = false;
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "-q" || word == "--quiet")
            quiet = true;
        else if (word == "list" && !list)
            list = true;
        else
            return std::nullopt;
    }
    if (!list)
        return std::nullopt;
    return quiet;
}

} // namespace

std::optional<int> FavListFastPath::run(int count, char* words[])
{
    const auto quiet = plainListQuiet(count, words);
    const auto path = quiet ? plainFavouritesPath() : std::nullopt;
    if (!path)
        return std::nullopt;
    const std::string& databasePath = *path;
    // Nothing is printed before the whole list was read: a store that fails part-way goes to
    // lumaro-cli-light, which says why.
    std::string out;
    const bool read = library::FavouritePathReader::readEach(databasePath, [&](std::string_view path) {
        appendEscapedLineBytes(out, path);
        out += '\n';
    });
    if (!read)
        return std::nullopt;
    if (!*quiet)
        writeAll(stderr, openedStoreLogLines(databasePath));
    writeAll(stdout, out);
    return exitOk;
}

} // namespace lumaro::cli
