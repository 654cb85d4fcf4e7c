// SPDX-License-Identifier: GPL-3.0-or-later
// What a picture's own metadata says about it (camera make and model), read through exiv2.
#pragma once

#include <QString>

namespace lumaro::platform {

struct ImageMetadata
{
    enum class Status {
        ok,             // the file was read; make and model may still be empty
        cannotOpen,     // not a readable image (missing, truncated, unknown format)
        noProperties,   // an image without EXIF
    };

    Status status = Status::cannotOpen;
    QString make;  // Exif.Image.Make, trimmed
    QString model; // Exif.Image.Model, trimmed
    QString error; // the reader's reason when status is not ok

    // Reads only the metadata, never the pixels. Thread-safe, blocking.
    static ImageMetadata read(const QString& path);
};

} // namespace lumaro::platform
