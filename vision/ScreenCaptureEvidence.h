// SPDX-License-Identifier: GPL-3.0-or-later
// What tells a screen capture from a camera picture: camera metadata, a display's exact size, flat areas.
#pragma once

#include "vision/PictureSignals.h"

#include <QImage>
#include <QSize>
#include <QString>

namespace lumaro::vision {

struct FlatAreas
{
    double share = 0.0; // part of the picture in 8 × 8 blocks of one exact colour
    int colours = 0;    // colours of those blocks that each cover at least 1 % of the picture
    // Of the blocks mostly off the backdrop (the commonest flat colour), the share whose colours spread
    // wider than a drawing's fill or a JPEG's noise in one: a photo's texture (fur, grass, skin) fills
    // nearly all of them, a drawing's fills and strokes leave many smooth.
    double offBackdropTexture = 0.0;
    int backdropGrey = -1; // the backdrop's grey level (0 black … 255 white); -1 without flat blocks
};

// Thread-safe, blocking (reads the file's metadata).
class ScreenCaptureEvidence
{
public:
    static ScreenEvidence of(const QString& path, const QImage& decoded, const QSize& pixelSize);

    // UI backgrounds are flat, a camera's noise never is; a window has several flat colours (bars, panels,
    // page), a clean document page only its paper.
    static FlatAreas flatAreas(const QImage& image);
    // One of the common display sizes, either way round (a phone's portrait capture included).
    static bool isScreenSize(const QSize& size);
    // Whether flat areas meet along a long straight edge both across (half the width) and down (a third of
    // the height): the frame of a panel, a text box or a window. Paper has no such edges, and a camera's
    // noise never keeps one colour along a line.
    static bool hasFramedPanel(const QImage& image);
};

} // namespace lumaro::vision
