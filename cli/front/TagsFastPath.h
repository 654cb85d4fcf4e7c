// SPDX-License-Identifier: GPL-3.0-or-later
// `lumaro-cli tags [-q] FILE` without loading Qt: a picture's tags read by the rule XattrTagStore reads them
// by (platform::TagAttribute) and printed with lumaro-cli-light's escaping.
#pragma once

#include <optional>

namespace lumaro::cli {

class TagsFastPath
{
public:
    // Prints the tags and returns the exit code when the words after "tags" are one file and at most
    // -q/--quiet, and the file's attribute can be read. nullopt, with nothing printed, for anything else (a
    // toggle, --json, a missing file or folder, a file system without attributes, whose tags live in the
    // folder's index file): lumaro-cli-light then answers, with its messages.
    static std::optional<int> run(int count, char* words[]);
};

} // namespace lumaro::cli
