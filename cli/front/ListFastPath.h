// SPDX-License-Identifier: GPL-3.0-or-later
// `lumaro-cli list [-q] [-0] FOLDER` without loading Qt: the one call scripts make per folder, printed from
// the same listing rules (browse::PictureFolderListing) and escaping (escapedLineBytes) as lumaro-cli-light's
// `list`.
#pragma once

#include <optional>

namespace lumaro::cli {

class ListFastPath
{
public:
    // Lists the folder and returns the exit code when the words after "list" are only -q/--quiet, -0/--null
    // and one readable folder named in UTF-8. nullopt, with nothing printed, for anything else (--json,
    // --help, bad usage, a folder that is missing or unreadable): lumaro-cli-light then answers, with its
    // messages.
    static std::optional<int> run(int count, char* words[]);
};

} // namespace lumaro::cli
