// SPDX-License-Identifier: GPL-3.0-or-later
// How the front end prints: each answer is built whole first, then written and flushed in one go, so that
// nothing is half-printed when it hands a command line over to lumaro-cli-light instead.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace lumaro::cli {

// "TAG - MESSAGE" and a newline, as platform::Log writes a line.
inline std::string logLine(std::string_view tag, std::string_view message)
{
    return std::string(tag) + " - " + std::string(message) + "\n";
}

inline void writeAll(std::FILE* stream, std::string_view bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stream);
    std::fflush(stream);
}

} // namespace lumaro::cli
