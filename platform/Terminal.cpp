// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

namespace lumaro::platform {

bool Terminal::isStandardErrorTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

bool Terminal::isStandardInputTerminal()
{
    return ::isatty(STDIN_FILENO) == 1;
}

int Terminal::standardErrorColumns()
{
    winsize size{};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}

} // namespace lumaro::platform
