// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli COMMAND [options]: the front end, without Qt. It answers --help, `COMMAND --help`, a plain
// `list`, `fav list`, `fav add`, `fav remove`, `fav type`, `fav audit`, `tags FILE`, a plain `trash FILE...`
// and `trash --restore FILE...` itself, in a few milliseconds, and hands every other command line over by
// exec, byte for byte, to the program that runs it (cli/CommandTable.h): lumaro-cli-light (Qt Core, SQLite),
// lumaro-cli-xmp, lumaro-cli-exif or lumaro-cli-heavy. Loading Qt Core and the ICU, GLib and PCRE libraries
// it needs costs more than listing a folder of 1,000 pictures.
#include "cli/ExitCode.h"
#include "cli/front/CommandDirectory.h"
#include "cli/front/CommandHelp.h"
#include "cli/front/FavAuditFastPath.h"
#include "cli/front/FavChangeFastPath.h"
#include "cli/front/FavListFastPath.h"
#include "cli/front/HelperHandOver.h"
#include "cli/front/ListFastPath.h"
#include "cli/front/TagsFastPath.h"
#include "cli/front/TrashFastPath.h"
#include "cli/front/TrashRestoreFastPath.h"
#include "cli/front/WriteAll.h"

#include <cstdio>
#include <string>
#include <string_view>

using namespace lumaro::cli;

namespace {

int printOverview(int code)
{
    writeAll(stdout, commandOverview());
    return code;
}

// A tag toggle also writes the XMP sidecar (exiv2), which this program cannot link statically: it goes to
// lumaro-cli-xmp, which hands whatever it does not do plainly on to lumaro-cli-exif.
bool asksForToggle(int count, char* words[])
{
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "--")
            return false;
        if (word == "--toggle" || word.starts_with("--toggle="))
            return true;
    }
    return false;
}

// What this program answers itself, tried in this order; each declines (nullopt, having done nothing) what it
// does not do exactly as the command's own program would.
struct FastPath
{
    std::string_view command;
    std::optional<int> (*run)(int count, char* words[]);
};
constexpr FastPath fastPaths[] = {
    {"list", &ListFastPath::run},    {"fav", &FavListFastPath::run}, {"fav", &FavChangeFastPath::run},
    {"fav", &FavAuditFastPath::run}, {"trash", &TrashFastPath::run}, {"trash", &TrashRestoreFastPath::run},
    {"tags", &TagsFastPath::run},
};

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2)
        return printOverview(exitUsage);
    const std::string_view name = argv[1];
    if (name == "--help" || name == "-h" || name == "help")
        return printOverview(exitOk);
    const CommandEntry* command = findCommandEntry(name);
    // --help-all adds Qt's own options only in a Qt application, which no command program is: it is --help.
    if (command && argc == 3 &&
        (std::string_view(argv[2]) == "--help" || std::string_view(argv[2]) == "-h" ||
         std::string_view(argv[2]) == "--help-all")) {
        if (const auto help = commandHelp(command->name)) {
            writeAll(stdout, *help);
            return exitOk;
        }
    }
    if (command) {
        for (const FastPath& answer : fastPaths) {
            if (answer.command != command->name)
                continue;
            if (const auto code = answer.run(argc - 2, argv + 2))
                return *code;
        }
    }
    if (command && command->name == "tags" && asksForToggle(argc - 2, argv + 2))
        return handOverToHelper("lumaro-cli-xmp", LUMARO_CLI_HELPER_FROM_BIN, argc, argv);
    // An unknown command too: lumaro-cli-light words the message.
    return handOverToHelper(command ? command->program : "lumaro-cli-light", LUMARO_CLI_HELPER_FROM_BIN, argc,
                            argv);
}
