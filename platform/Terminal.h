// SPDX-License-Identifier: GPL-3.0-or-later
// What the command line needs to know about where its output goes.
#pragma once

namespace lumaro::platform {

class Terminal
{
public:
    static bool isStandardErrorTerminal();
    // A person can answer a question: standard input is a terminal.
    static bool isStandardInputTerminal();
    // Columns of the terminal on standard error, 80 when unknown.
    static int standardErrorColumns();
};

} // namespace lumaro::platform
