// SPDX-License-Identifier: GPL-3.0-or-later
// Turns decoded pixels upright: the EXIF orientation (1–8) and a display rotation in clockwise degrees.
#pragma once

#include <QImage>

namespace lumaro::platform {

// Pure, thread-safe. An orientation outside 1–8 is treated as 1; degrees are taken modulo 360 and only
// quarter turns are applied (anything else is rounded down to one).
QImage applyExifOrientation(const QImage& image, int orientation);
QImage rotateClockwise(const QImage& image, int degrees);

// The orientation a RAW decoder's flip code (0, 3, 5, 6) stands for.
int orientationFromRawFlip(int flip);

} // namespace lumaro::platform
