// SPDX-License-Identifier: GPL-3.0-or-later
// The list of tool panels the window shows; one line per tool.
#include "app/ToolHost.h"

namespace lumaro::app {

void installToolPanels(ToolHost& host)
{
    (void)host;
}

} // namespace lumaro::app
