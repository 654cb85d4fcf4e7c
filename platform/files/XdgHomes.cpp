// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/XdgHomes.h"

#include "platform/files/CleanAbsolutePath.h"

#include <cstdlib>

namespace lumaro::platform {

namespace {

bool isPlainAbsolute(std::string_view path)
{
    return path.size() >= 2 && path.front() == '/' && CleanAbsolutePath::isTidy(path);
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

std::optional<std::string> XdgHomes::plainHomeTrash()
{
    const auto dataHome = plainPath(Home::data, std::getenv("XDG_DATA_HOME"), std::getenv("HOME"));
    // A trash inside a ".Trash" folder would record paths from that folder's parent.
    if (!dataHome || dataHome->ends_with("/.Trash"))
        return std::nullopt;
    return *dataHome + "/Trash";
}

} // namespace lumaro::platform
