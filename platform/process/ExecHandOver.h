// SPDX-License-Identifier: GPL-3.0-or-later
// Handing this process over to another program, without Qt: how lumaro-cli's front end and the programs
// behind it leave a command to the one that runs it.
#pragma once

#include <string>

namespace lumaro::platform {

// Runs `program` in place of this process (execv) with argv[1…argc-1] byte for byte. Returns only when the
// program could not be started, with errno's value.
int execInPlace(const char* program, int argc, char* argv[]);

// The folder of this process's own executable as bytes (through /proc/self/exe); empty when the kernel does
// not say.
std::string ownExecutableFolder();

} // namespace lumaro::platform
