// SPDX-License-Identifier: GPL-3.0-or-later
// A path in the absolute, tidy form Qt gives it (QDir::cleanPath of QFileInfo::absoluteFilePath), without Qt:
// the form the favourites store keys a picture by, for lumaro-cli's front end.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lumaro::platform {

class CleanAbsolutePath
{
public:
    // A relative `path` is taken from the working folder. No empty, "." or ".." parts, no trailing slash.
    // nullopt for an empty path, one that climbs above "/", or bytes that are not UTF-8 (in the path or the
    // working folder): forms Qt reads its own way, left to the Qt programs.
    static std::optional<std::string> of(std::string_view path);
    // Already in that form but for the working folder: UTF-8, not empty, no empty, "." or ".." part, no
    // trailing slash (a leading one is fine). Qt takes such a path as it is.
    static bool isTidy(std::string_view path);
};

} // namespace lumaro::platform
