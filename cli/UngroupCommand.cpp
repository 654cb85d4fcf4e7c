// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli ungroup FOLDER [--dry-run]: take the group prefixes off again, giving back the original names.
#include "cli/Commands.h"
#include "cli/NameWorkCommand.h"

namespace lumaro::cli {

int runUngroup(const QStringList& arguments)
{
    return runNameWork(NameWork::ungroup, arguments);
}

} // namespace lumaro::cli
