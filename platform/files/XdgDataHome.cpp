// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/XdgDataHome.h"

#include "platform/files/Utf8Sequence.h"

#include <algorithm>
#include <cstdlib>

namespace lumaro::platform {

namespace {

bool isPlainAbsolute(std::string_view path)
{
    if (path.size() < 2 || path.front() != '/' || path.back() == '/' || !isValidUtf8(path))
        return false;
    for (size_t start = 1; start <= path.size();) {
        const size_t end = std::min(path.find('/', start), path.size());
        const std::string_view part = path.substr(start, end - start);
        if (part.empty() || part == "." || part == "..")
            return false;
        start = end + 1;
    }
    return true;
}

} // namespace

std::optional<std::string> XdgDataHome::plainPath(const char* xdgDataHome, const char* home)
{
    if (xdgDataHome && *xdgDataHome) {
        if (!isPlainAbsolute(xdgDataHome))
            return std::nullopt;
        return std::string(xdgDataHome);
    }
    if (!home || !isPlainAbsolute(home))
        return std::nullopt;
    return std::string(home) + "/.local/share";
}

std::optional<std::string> XdgDataHome::plainAppDataDir()
{
    const auto home = plainPath(std::getenv("XDG_DATA_HOME"), std::getenv("HOME"));
    if (!home)
        return std::nullopt;
    return *home + "/" + std::string(appFolder);
}

} // namespace lumaro::platform
