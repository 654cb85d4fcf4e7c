// SPDX-License-Identifier: GPL-3.0-or-later
// The user.xdg.tags attribute's value as names, without Qt: the one reading and writing rule XattrTagStore,
// lumaro-cli's front end (a plain `tags FILE`) and its XMP helper (a toggle) share.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::platform {

class TagAttribute
{
public:
    static constexpr const char* name = "user.xdg.tags";

    // The names between commas, as bytes: white space around each (what QChar::isSpace calls space, so also
    // U+3000 and no-break spaces) dropped, empty and repeated names skipped. Bytes that are not UTF-8 are
    // kept as they are, and are never white space.
    static std::vector<std::string> names(std::string_view value);
    // The attribute's value of the file at `path` (links followed), empty when it has none; nullopt when it
    // cannot be read, with errno's value in `errorNumber` (ENOTSUP where the file system keeps no
    // attributes).
    static std::optional<std::string> read(const char* path, int* errorNumber);
    // Sets the attribute to `names` (each already clean: trimmed, without commas, once) joined by commas, or
    // removes it when there are none. False with errno's value in `errorNumber` (ENOTSUP where the file
    // system keeps no attributes).
    static bool write(const char* path, const std::vector<std::string>& names, int* errorNumber);
};

} // namespace lumaro::platform
