// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Commands.h"

namespace lumaro::cli {

const std::vector<Command>& commands()
{
    static const std::vector<Command> table{
        {QStringLiteral("list"), QStringLiteral("Print a folder's pictures in browsing order"), &runList},
    };
    return table;
}

} // namespace lumaro::cli
