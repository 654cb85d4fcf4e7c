// SPDX-License-Identifier: GPL-3.0-or-later
// A file name made safe for one line of plain output, from its bytes: what `list` prints in both of
// lumaro-cli's programs (the Qt-free front end and the commands' escapedForLine).
#pragma once

#include <string>
#include <string_view>

namespace lumaro::cli {

// Control characters escaped as \n, \t or \xHH, a backslash doubled, and each byte that is not UTF-8 (by
// platform::utf8SequenceLength) as \xHH, so one line is always one name; all else is copied. Any thread.
std::string escapedLineBytes(std::string_view name);
// The same appended to `out`, for listings of tens of thousands of names.
void appendEscapedLineBytes(std::string& out, std::string_view name);

} // namespace lumaro::cli
