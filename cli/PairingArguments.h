// SPDX-License-Identifier: GPL-3.0-or-later
// The --jpg and --raw folders that `clean` and `pick` share, checked before either touches a file.
#pragma once

#include "cli/CommandLine.h"

#include <optional>

namespace lumaro::cli {

struct PairingFolders
{
    QString jpg;
    QString raw;
};

void addPairingOptions(CommandLine& line);
// nullopt after printing why (the exit code is then exitUsage).
std::optional<PairingFolders> pairingFolders(CommandLine& line);

} // namespace lumaro::cli
