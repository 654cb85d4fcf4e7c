// SPDX-License-Identifier: GPL-3.0-or-later
// Turns a picture 90° to the left on disk, in the least destructive way its format allows.
#pragma once

#include <QString>

namespace lumaro::platform {

struct RotationOutcome
{
    enum class Status {
        rotated,               // the file on disk now shows the picture turned
        needsDisplayRotation,  // the format cannot be rewritten here: the caller turns it on screen instead
        unsupportedFormat,     // not a picture this can turn
        failed,                // a picture that should turn but did not; the file is unchanged
    };
    enum class Method { none, exifOrientation, cr2Orientation, pixels };

    Status status = Status::failed;
    Method method = Method::none;
    bool permissionDenied = false; // failed because the file or its folder cannot be written
    QString error;
};

// Thread-safe, blocking. The file's bytes, not its name, pick the way. JPEG turns losslessly through its EXIF
// orientation (exiv2) whatever its name; CR2 gets its orientation tag patched in place (two bytes, the raw
// data untouched); a still PNG, TIFF, BMP or WebP is decoded, turned and encoded again in its own format. GIF
// (Qt cannot write it), HEIC/HEIF, the other RAW formats and any picture of several frames (a multi-page
// TIFF, an animated PNG or WebP: a rewrite would keep only the first) are left alone with
// needsDisplayRotation. Every rewrite goes to a temporary file beside the original that carries the
// original's permissions and user.* attributes (its colour tags) and is renamed over it, so a failure at any
// point leaves the original whole.
class ImageRotator
{
public:
    static RotationOutcome rotateLeft(const QString& path);

    // The EXIF orientation (1–8) shown after turning a picture of orientation `orientation` 90° to the left.
    static int orientationAfterLeftTurn(int orientation);
};

} // namespace lumaro::platform
