// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/CommandDirectory.h"

#include <algorithm>
#include <array>

namespace lumaro::cli {

namespace {

constexpr const char* kLight = "lumaro-cli-light";
constexpr const char* kExif = "lumaro-cli-exif";
constexpr const char* kHeavy = "lumaro-cli-heavy";

#define LIGHT(name, summary, run) CommandEntry{name, summary, kLight},
#define SPLIT(name, summary, lightRun, exifRun) CommandEntry{name, summary, kLight},
#define EXIF(name, summary, run) CommandEntry{name, summary, kExif},
#define HEAVY(name, summary, run) CommandEntry{name, summary, kHeavy},
#define PAINTING(name, summary, run) CommandEntry{name, summary, kHeavy},
constexpr std::array kCommands{
#include "cli/CommandTable.h"
};
#undef LIGHT
#undef SPLIT
#undef EXIF
#undef HEAVY
#undef PAINTING

} // namespace

std::span<const CommandEntry> commandDirectory()
{
    return kCommands;
}

const CommandEntry* findCommandEntry(std::string_view name)
{
    const auto found = std::find_if(kCommands.begin(), kCommands.end(),
                                    [name](const CommandEntry& command) { return command.name == name; });
    return found == kCommands.end() ? nullptr : &*found;
}

std::string commandOverview()
{
    std::string text =
        "Usage: lumaro-cli COMMAND [options]\n\nLumaro's batch tools for picture folders.\n\nCommands:\n";
    for (const CommandEntry& command : kCommands) {
        text += "  ";
        text += command.name;
        text.append(command.name.size() < 10 ? 10 - command.name.size() : 0, ' ');
        text += command.summary;
        text += '\n';
    }
    text += "\nRun 'lumaro-cli COMMAND --help' for a command's options.\n"
            "Exit codes: 0 all went well, 1 some items failed, 2 bad usage or bad input.\n";
    return text;
}

} // namespace lumaro::cli
