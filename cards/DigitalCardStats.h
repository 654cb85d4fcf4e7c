// SPDX-License-Identifier: GPL-3.0-or-later
// What is on one mounted memory card, counted the way its camera family lays it out.
#pragma once

#include "cards/CameraType.h"

#include <QString>

namespace lumaro::cards {

struct DigitalCardStats
{
    CameraType cameraType = CameraType::unknown;
    int jpgCount = 0;
    QString rawFormat; // "CR3" for canonR; empty for canonIXUS
    int rawCount = 0;
    QString videoFormat; // "MP4" for canonR, "AVI" for canonIXUS
    int videoCount = 0;
    QString cameraMakeModel; // from a picture's EXIF; empty when unknown
};

} // namespace lumaro::cards
