// SPDX-License-Identifier: GPL-3.0-or-later
// Text without the ASCII white space at its ends (space, \t, \n, \v, \f, \r), as QByteArray::trimmed cuts it:
// for the Qt-free readers of files that Qt code reads too.
#pragma once

#include <string_view>

namespace lumaro::platform {

constexpr std::string_view asciiTrimmed(std::string_view text)
{
    const auto blank = [](char c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

} // namespace lumaro::platform
