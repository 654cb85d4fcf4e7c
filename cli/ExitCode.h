// SPDX-License-Identifier: GPL-3.0-or-later
// The exit codes every lumaro-cli command keeps to.
#pragma once

namespace lumaro::cli {

enum ExitCode : int {
    exitOk = 0,      // everything went well
    exitPartial = 1, // the command ran, but some items failed
    exitUsage = 2,   // bad usage or bad input: nothing was done
};

} // namespace lumaro::cli
