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

// Thread-safe, blocking. JPEG turns losslessly through its EXIF orientation (exiv2); CR2 gets its orientation
// tag patched in place (two bytes, the raw data untouched); PNG, TIFF, BMP and WebP are decoded, turned and
// encoded again. GIF (Qt cannot write it; animations would lose frames), HEIC/HEIF and the other RAW formats
// are left alone with needsDisplayRotation. Every rewrite goes to a temporary file beside the original that
// carries the original's permissions and user.* attributes (its colour tags) and is renamed over it, so a
// failure at any point leaves the original whole.
class ImageRotator
{
public:
    static RotationOutcome rotateLeft(const QString& path);

    // The EXIF orientation (1–8) shown after turning a picture of orientation `orientation` 90° to the left.
    static int orientationAfterLeftTurn(int orientation);
};

} // namespace lumaro::platform
