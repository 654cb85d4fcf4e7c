// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/picture/ImageOrientation.h"

#include "platform/picture/HugePages.h"

#include <QTransform>

namespace lumaro::platform {

namespace {

// A full-size picture is turned into huge-page memory (see HugePages); anything else, or a format that is
// not 32-bit, by Qt.
QImage turned(const QImage& image, int degrees)
{
    QImage quick = HugePages::rotated(image, degrees / 90);
    return quick.isNull() ? image.transformed(QTransform().rotate(degrees)) : quick;
}

} // namespace

QImage applyExifOrientation(const QImage& image, int orientation)
{
    if (image.isNull())
        return image;
    switch (orientation) {
    case 2: return image.mirrored(true, false);
    case 3: return turned(image, 180);
    case 4: return image.mirrored(false, true);
    case 5: return turned(image.mirrored(false, true), 90); // transpose
    case 6: return turned(image, 90);
    case 7: return turned(image.mirrored(true, false), 90); // transverse
    case 8: return turned(image, 270);
    default: return image;
    }
}

QImage rotateClockwise(const QImage& image, int degrees)
{
    const int quarter = ((degrees % 360) + 360) % 360 / 90;
    if (quarter == 0 || image.isNull())
        return image;
    return turned(image, quarter * 90);
}

int orientationFromRawFlip(int flip)
{
    switch (flip) {
    case 3: return 3;
    case 5: return 8;
    case 6: return 6;
    default: return 1;
    }
}

} // namespace lumaro::platform
