// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli group FOLDER [--dry-run]: prefix each run of related pictures with its group number.
#include "cli/Commands.h"
#include "cli/NameWorkCommand.h"

namespace lumaro::cli {

int runGroup(const QStringList& arguments)
{
    return runNameWork(NameWork::group, arguments);
}

} // namespace lumaro::cli
