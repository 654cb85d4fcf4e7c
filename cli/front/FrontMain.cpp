// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli COMMAND [options]: the front end, without Qt. It answers --help and a plain `list` itself, in a
// few milliseconds, and hands every other command line over by exec, byte for byte, to the program that runs
// it (cli/CommandTable.h): lumaro-cli-light (Qt Core, SQLite), lumaro-cli-exif or lumaro-cli-heavy. Loading
// Qt Core and the ICU, GLib and PCRE libraries it needs costs more than listing a folder of 1,000 pictures.
#include "cli/ExitCode.h"
#include "cli/front/CommandDirectory.h"
#include "cli/front/ListFastPath.h"

#include "platform/process/ExecHandOver.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

using namespace lumaro::cli;

namespace {

int printOverview(int code)
{
    const std::string text = commandOverview();
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
    return code;
}

// `helper` beside this program in a build tree, in <prefix>/libexec/lumaro once installed. Returns only when
// neither could be started.
int handOver(const char* helper, int argc, char* argv[])
{
    const std::string folder = lumaro::platform::ownExecutableFolder();
    int error = 0;
    for (const std::string& place :
         {folder + "/" + helper, folder + "/" LUMARO_CLI_HELPER_FROM_BIN "/" + helper})
        error = lumaro::platform::execInPlace(place.c_str(), argc, argv);
    std::fprintf(stderr, "lumaro-cli: cannot start %s beside %s or in %s: %s\n", helper, folder.c_str(),
                 LUMARO_CLI_HELPER_FROM_BIN, std::strerror(error));
    return exitUsage;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2)
        return printOverview(exitUsage);
    const std::string_view name = argv[1];
    if (name == "--help" || name == "-h" || name == "help")
        return printOverview(exitOk);
    const CommandEntry* command = findCommandEntry(name);
    if (command && command->name == "list") {
        if (const auto code = ListFastPath::run(argc - 2, argv + 2))
            return *code;
    }
    // An unknown command too: lumaro-cli-light words the message.
    return handOver(command ? command->program : "lumaro-cli-light", argc, argv);
}
