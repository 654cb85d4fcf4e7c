// SPDX-License-Identifier: GPL-3.0-or-later
// The small pictures a file carries inside it, read without decoding the main image: the EXIF thumbnail and
// orientation (exiv2), the embedded JPEG of a RAW file (libraw, exiv2's preview list as the fallback).
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <optional>

namespace lumaro::platform {

struct ExifSummary
{
    bool readable = false; // exiv2 could parse the metadata
    int orientation = 1;   // 1–8
    QByteArray thumbnail;  // the EXIF (IFD1) JPEG thumbnail, empty when there is none
};

struct RawPreview
{
    QByteArray jpeg;     // the embedded JPEG, when the camera stored one
    QImage bitmap;       // else an embedded bitmap
    int orientation = 1; // how the RAW file says the picture stands
};

// Thread-safe, blocking.
class EmbeddedPreview
{
public:
    // EXIF of a picture held in memory; `data` may be only the head of the file.
    static ExifSummary exifOf(const QByteArray& data);
    // The largest embedded preview of a RAW file (libraw_r), else exiv2's largest preview; nullopt with the
    // reason in `error` when the file carries none or cannot be read.
    static std::optional<RawPreview> rawPreview(const QString& path, QString* error = nullptr);
};

} // namespace lumaro::platform
