// SPDX-License-Identifier: GPL-3.0-or-later
// Handing this process over to another program: a small front end that leaves a command to a larger helper.
#pragma once

#include <QString>

namespace lumaro::platform {

// Runs `program` in place of this process (execv) with this process's own arguments argv[1…argc-1], byte for
// byte (a file name that is not UTF-8 arrives unchanged): same process id, standard streams, working folder
// and environment, so the caller's parent sees the helper's output and exit code as the caller's own. Returns
// only when the program could not be started, with the reason. Flush buffered output before calling.
QString handOverProcess(const QString& program, int argc, char* argv[]);

// The folder of this process's own executable (through /proc/self/exe, so it needs no Qt application and
// keeps a folder name that is not UTF-8); empty when the kernel does not say.
QString runningProgramFolder();

} // namespace lumaro::platform
