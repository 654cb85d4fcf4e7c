// SPDX-License-Identifier: GPL-3.0-or-later
// What a picture's own metadata says about it (camera make, model and serial, capture time), read through
// exiv2.
#pragma once

#include <QString>

namespace lumaro::platform {

struct ImageMetadata
{
    enum class Status
    {
        ok,           // the file was read; make and model may still be empty
        cannotOpen,   // not a readable image (missing, truncated, unknown format)
        noProperties, // an image without EXIF
    };

    Status status = Status::cannotOpen;
    QString make;        // Exif.Image.Make, trimmed
    QString model;       // Exif.Image.Model, trimmed
    QString serial;      // the body's serial number (Exif.Photo.BodySerialNumber, else the maker's own tag)
    QString captureTime; // Exif.Photo.DateTimeOriginal as written ("2026:05:01 14:03:22"), else empty
    QString error;       // the reader's reason when status is not ok

    // Reads only the metadata, never the pixels. Thread-safe, blocking.
    static ImageMetadata read(const QString& path);
};

} // namespace lumaro::platform
