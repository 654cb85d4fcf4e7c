// SPDX-License-Identifier: GPL-3.0-or-later
// How one picture is drawn in the grid, the film strip and the waterfall: image or placeholder, colour tags,
// selection frame.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <QStringList>

#include "platform/metadata/PictureMarks.h"

class QPainter;

namespace lumaro::app {

struct Tile
{
    const QImage* image = nullptr; // null while decoding
    bool failed = false;           // the file could not be decoded
    bool selected = false;
    QStringList colors;           // colour tag names, drawn as dots
    platform::PictureMarks marks; // stars and pick/reject, drawn in the bottom-left corner
};

// Main thread (painting).
class TilePainter
{
public:
    static void paint(QPainter& painter, const QRect& cell, const Tile& tile);
    // The colour dots alone, in the top-right corner of `area`.
    static void paintColorDots(QPainter& painter, const QRect& area, const QStringList& colors, int diameter);
    // Stars and a pick (green check) or reject (red cross) in the bottom-left corner of `area`; a reject
    // also dims the picture, so it stands out while culling.
    static void paintMarks(QPainter& painter, const QRect& area, const platform::PictureMarks& marks,
                           int height);
    static QColor colorOfTag(const QString& name);
    // The image's size fitted into `bounds`, centred.
    static QRect fitted(const QSize& image, const QRect& bounds);
};

} // namespace lumaro::app
