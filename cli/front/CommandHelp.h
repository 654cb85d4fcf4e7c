// SPDX-License-Identifier: GPL-3.0-or-later
// Each command's `--help`, for the front end to answer `lumaro-cli COMMAND --help` without loading Qt. The
// table is written at build time from the programs behind it (make-command-help.sh), so it says what they say.
#pragma once

#include <optional>
#include <string_view>

namespace lumaro::cli {

// What `lumaro-cli NAME --help` prints; nullopt for a name that is no command.
std::optional<std::string_view> commandHelp(std::string_view name);

} // namespace lumaro::cli
