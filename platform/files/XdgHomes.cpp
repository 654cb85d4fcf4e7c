// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/XdgHomes.h"

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

std::optional<std::string> XdgHomes::plainPath(Home home, const char* xdgValue, const char* userHome)
{
    if (xdgValue && *xdgValue) {
        if (!isPlainAbsolute(xdgValue))
            return std::nullopt;
        return std::string(xdgValue);
    }
    if (!userHome || !isPlainAbsolute(userHome))
        return std::nullopt;
    return std::string(userHome) + (home == Home::data ? "/.local/share" : "/.config");
}

std::optional<std::string> XdgHomes::plainAppDir(Home home)
{
    const auto folder = plainPath(home, std::getenv(home == Home::data ? "XDG_DATA_HOME" : "XDG_CONFIG_HOME"),
                                  std::getenv("HOME"));
    if (!folder)
        return std::nullopt;
    return *folder + "/" + std::string(appFolder);
}

} // namespace lumaro::platform
