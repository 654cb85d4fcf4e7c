// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/HelperHandOver.h"

#include "cli/ExitCode.h"

#include "platform/process/ExecHandOver.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace lumaro::cli {

int handOverToHelper(const char* helper, const char* folderFromBin, int argc, char* argv[])
{
    const std::string folder = platform::ownExecutableFolder();
    int error = 0;
    for (const std::string& place : {folder + "/" + helper, folder + "/" + folderFromBin + "/" + helper})
        error = platform::execInPlace(place.c_str(), argc, argv);
    std::fprintf(stderr, "lumaro-cli: cannot start %s beside %s or in %s: %s\n", helper, folder.c_str(),
                 folderFromBin, std::strerror(error));
    return exitUsage;
}

} // namespace lumaro::cli
