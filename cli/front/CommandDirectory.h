// SPDX-License-Identifier: GPL-3.0-or-later
// Every lumaro-cli command by name (the list is cli/CommandTable.h): its summary and the program that runs
// it, without Qt, for the front end that must decide before loading anything.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace lumaro::cli {

struct CommandEntry
{
    std::string_view name;
    std::string_view summary;
    // lumaro-cli-light (Qt Core, SQLite), lumaro-cli-exif (and exiv2) or lumaro-cli-heavy (everything).
    const char* program;
};

std::span<const CommandEntry> commandDirectory();
// nullptr for a name that is no command.
const CommandEntry* findCommandEntry(std::string_view name);
// What `lumaro-cli --help` prints: the usage line, each command with its summary, the exit codes.
std::string commandOverview();

} // namespace lumaro::cli
