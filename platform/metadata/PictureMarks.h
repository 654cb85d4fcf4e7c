// SPDX-License-Identifier: GPL-3.0-or-later
// A photographer's verdict on a picture as the editors keep it: stars, pick or reject, colour labels.
#pragma once

#include <QStringList>

namespace lumaro::platform {

enum class PickFlag
{
    none,
    picked,
    rejected,
};

// Stored as XMP the way darktable, digiKam and Lightroom read it: xmp:Rating 0–5 (−1 for a reject),
// digiKam:PickLabel (3 picked, 1 rejected), and the colours as xmp:Label, darktable:colorlabels and
// digiKam:ColorLabel. A reject carries no stars.
struct PictureMarks
{
    int stars = 0; // 0–5
    PickFlag flag = PickFlag::none;
    QStringList colours; // colour names (red, yellow, orange, green, blue, purple) the XMP labels name

    bool hasRating() const { return stars > 0 || flag != PickFlag::none; }
    friend bool operator==(const PictureMarks&, const PictureMarks&) = default;
};

} // namespace lumaro::platform
