// SPDX-License-Identifier: GPL-3.0-or-later
// The EXIF orientation of a JPEG, read and changed through exiv2 without touching the compressed pixels.
#pragma once

#include <QString>

namespace lumaro::platform {

// Thread-safe, blocking.
class ExifOrientation
{
public:
    // 1–8; 1 when the file has no orientation; 0 when it cannot be read.
    static int read(const QString& path, QString* error = nullptr);
    // Sets orientation o to turn(o) (a file without one counts as 1). The file is rewritten through a temporary
    // file and a rename (FileReplacer), keeping its tags.
    static bool turnJpeg(const QString& path, int (*turn)(int), QString* error);
};

} // namespace lumaro::platform
