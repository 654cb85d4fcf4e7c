// SPDX-License-Identifier: GPL-3.0-or-later
// `lumaro-cli trash --restore FILE... [-q]` without loading Qt, for the common case: each file trashed from
// that very path into the home trash, found by the record named after it, nothing in its way. Put back as
// FileDeleteService puts back by lookup, with lumaro-cli-light's output and log lines.
#pragma once

#include <optional>

namespace lumaro::cli {

class TrashRestoreFastPath
{
public:
    // Puts the files back and returns the exit code when the words after "trash" are --restore, paths and at
    // most -q/--quiet; each path is tidy UTF-8, named once, and nothing is at it yet, in a folder that can be
    // listed on the home trash's volume with no volume trash above it; the home trash (at a plainly named
    // data folder) holds, under the file's name or a numbered one, an item whose record names that path (the
    // newest first, when their dates are written plainly), and no trashed sidecar at all. nullopt, with
    // nothing printed and nothing moved, for anything else: lumaro-cli-light then searches every record,
    // other trashes and the desktop's own restore.
    static std::optional<int> run(int count, char* words[]);
};

} // namespace lumaro::cli
