// SPDX-License-Identifier: GPL-3.0-or-later
// Leaving a command to the lumaro-cli program that runs it, without Qt: the front end and the programs behind
// it hand over the same way.
#pragma once

namespace lumaro::cli {

// Runs `helper` in place of this process with the same arguments, found beside this program (a build tree) or
// in `folderFromBin` relative to it (<prefix>/libexec/lumaro once installed). Returns only when neither could
// be started, after saying so on standard error, with the exit code for that. Flush buffered output first.
int handOverToHelper(const char* helper, const char* folderFromBin, int argc, char* argv[]);

} // namespace lumaro::cli
