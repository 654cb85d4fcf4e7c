// SPDX-License-Identifier: GPL-3.0-or-later
// What a path names, asked by its bytes without Qt (FileNameCodec asks through these too).
#pragma once

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
};

} // namespace lumaro::platform
