// SPDX-License-Identifier: GPL-3.0-or-later
// Where a user's data and settings live ($XDG_DATA_HOME, else ~/.local/share; $XDG_CONFIG_HOME, else
// ~/.config), for lumaro-cli's Qt-free front end. AppPaths asks Qt, which also settles the unusual forms (a
// relative or untidy path, no home folder); this answers only the plain forms, where the two cannot differ,
// and nothing for the rest, which the front end then leaves to lumaro-cli-light.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lumaro::platform {

class XdgHomes
{
public:
    // The folder of Lumaro's own files under each XDG home (AppPaths).
    static constexpr std::string_view appFolder = "lumaro";

    enum class Home
    {
        data,
        config
    };

    // From the values of the home's variable (XDG_DATA_HOME, XDG_CONFIG_HOME) and of HOME (null when unset):
    // the folder when the one in use is an absolute, tidy UTF-8 path (no empty, "." or ".." parts, no
    // trailing slash) other than "/".
    static std::optional<std::string> plainPath(Home home, const char* xdgValue, const char* userHome);
    // Lumaro's folder under the plain home of this process's environment.
    static std::optional<std::string> plainAppDir(Home home);
    // The home trash (Trash under the plain data home) when it records absolute paths, as TrashDirectories
    // names it.
    static std::optional<std::string> plainHomeTrash();
};

} // namespace lumaro::platform
