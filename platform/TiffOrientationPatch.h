// SPDX-License-Identifier: GPL-3.0-or-later
// Changes the Orientation tag of a TIFF-structured file (Canon CR2) in place, leaving every other byte alone.
#pragma once

#include <QString>

namespace lumaro::platform {

// Thread-safe, blocking. Only the tag's two bytes in the first image directory are written; a file without
// that tag, or not TIFF-structured, is left unchanged and the call fails with the reason.
class TiffOrientationPatch
{
public:
    // The current orientation (1–8) of the file, or 0 when it has none or cannot be read.
    static int read(const QString& path, QString* error = nullptr);
    // Replaces orientation o by turn(o).
    static bool apply(const QString& path, int (*turn)(int), QString* error);
};

} // namespace lumaro::platform
