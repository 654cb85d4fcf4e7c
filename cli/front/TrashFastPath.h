// SPDX-License-Identifier: GPL-3.0-or-later
// `lumaro-cli trash FILE... [-q] [--json]` without loading Qt, for the common case: plain files on the home trash's
// volume, with no XMP sidecar beside them. Put in through platform::TrashItem, as the window puts them, with
// lumaro-cli-light's output and log lines.
#pragma once

#include <optional>

namespace lumaro::cli {

class TrashFastPath
{
public:
    // Moves the files to the home trash and returns the exit code when the words after "trash" are paths and
    // at most -q/--quiet and --json; each path is tidy UTF-8 (no empty, "." or ".." parts), names a plain file (not a
    // link, not a folder) once, in a folder that can be listed on the home trash's volume, with no sidecar
    // (NAME.xmp, STEM.xmp in either case) to take along; and the home trash, at a plainly named data folder,
    // has its files and info folders. nullopt, with nothing printed and nothing moved, for anything else:
    // lumaro-cli-light then answers.
    static std::optional<int> run(int count, char* words[]);
};

} // namespace lumaro::cli
