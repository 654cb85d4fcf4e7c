// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes a picture file for display, by the cheapest route its format offers: value in, upright image out.
#pragma once

#include <QImage>
#include <QString>

namespace lumaro::platform {

enum class DecodeRoute
{
    none,
    exifThumbnail,
    cameraPreview,
    jpegScaled,
    rawPreview,
    heifThumbnail,
    heif,
    qt
};

struct PictureRequest
{
    QString path;
    int maxSide = 256;          // long side of the result at most this (0: full size)
    bool allowEmbedded = true;  // a thumbnail stored in the file may stand in when it is big enough
    int extraRotation = 0;      // clockwise degrees on top of the file's own orientation (display overrides)
};

struct DecodedPicture
{
    QImage image;  // upright; null when the file could not be decoded
    DecodeRoute route = DecodeRoute::none;
    QString error; // why the image is null, or why it is not the whole picture (a file cut short)

    bool isNull() const { return image.isNull(); }
    // Only part of the picture, or its small embedded thumbnail: what a file cut short still gives.
    bool isPartial() const { return !image.isNull() && !error.isEmpty(); }
};

// Thread-safe, blocking; meant for pool threads. Routes, by extension:
//  - JPEG: the EXIF thumbnail when its long side reaches maxSide, else the smallest camera preview of the MPF
//  block
//    that does (CameraPreview), else libjpeg-turbo at the smallest DCT scale that covers maxSide; the EXIF
//    orientation applied. A file whose data ends early decodes to nothing.
//  - RAW (cr2, nef, arw, dng, …): the embedded JPEG preview (libraw, exiv2 as the fallback), turned upright.
//  - HEIC/HEIF: libheif, the embedded thumbnail when big enough.
//  - PNG, TIFF, BMP, GIF (first frame), WebP and anything else: Qt, with its own orientation handling.
// A file whose content does not match its extension is tried with Qt before giving up.
class PictureReader
{
public:
    static DecodedPicture read(const PictureRequest& request);
    static QString routeName(DecodeRoute route);
};

} // namespace lumaro::platform
