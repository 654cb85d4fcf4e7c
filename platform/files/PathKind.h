// SPDX-License-Identifier: GPL-3.0-or-later
// What a path names, asked by its bytes without Qt (FileNameCodec asks through these too).
#pragma once

#include <cstdint>
#include <optional>

namespace lumaro::platform {

class PathKind
{
public:
    // A plain file, or a link to one.
    static bool isFile(const char* path);
    // A folder, or a link to one.
    static bool isDirectory(const char* path);
    // Anything at all, a link that leads nowhere included (as FileNameCodec::exists answers).
    static bool exists(const char* path);
    // A plain file itself, not a link to one.
    static bool isPlainFileItself(const char* path);
    // A folder this process may list and enter.
    static bool canList(const char* folder);
    // The device of the volume `path` (links followed) lies on; nullopt when it cannot be examined.
    static std::optional<std::uint64_t> deviceOf(const char* path);
};

} // namespace lumaro::platform
