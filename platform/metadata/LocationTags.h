// SPDX-License-Identifier: GPL-3.0-or-later
// Where a picture was taken (the EXIF GPS block and its XMP mirror): removed from copies that leave the
// machine, or carried over on purpose.
#pragma once

#include <QString>

namespace lumaro::platform {

class LocationTags
{
public:
    // Rewrites `path` without any GPS tag; a file without one is left untouched. Blocking, thread-safe.
    static bool strip(const QString& path, QString* error = nullptr);
    // Writes the GPS tags of `source` (if any) into `target`, a JPEG. Blocking, thread-safe.
    static bool copy(const QString& source, const QString& target, QString* error = nullptr);
    static bool has(const QString& path);
};

} // namespace lumaro::platform
