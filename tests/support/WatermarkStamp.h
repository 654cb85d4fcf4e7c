// SPDX-License-Identifier: GPL-3.0-or-later
// Stamps a platform-style identifier over a picture, the way saved social pictures carry their poster's name.
#pragma once

#include <QColor>
#include <QImage>
#include <QString>

namespace lumaro::testing {

enum class StampPlace
{
    topLeft,
    topRight,
    bottomLeft,
    bottomRight,
    bottomCentre
};

struct WatermarkStyle
{
    StampPlace place = StampPlace::bottomRight;
    double opacity = 0.6;      // 0..1, of the white text
    double heightShare = 0.02; // text height as a part of the picture's height
    bool shadow = false;       // a dark copy one step down and right, as platforms draw it
    bool logo = false;         // a small rounded mark before the text
    bool bold = true;
    bool monospaced = false; // Noto Sans Mono CJK, as some apps stamp account numbers
    QString family;          // another font family than Noto's, when not empty
    QString
        platformLine; // the app's name on a line of its own above the identifier ("小红书"); none when empty
    double marginShare = 0.02; // the stamp's distance from the picture's edges, as a part of its height
    QColor colour = Qt::white; // some apps stamp in grey or black
};

// Returns `picture` with `text` drawn on it in Noto Sans CJK or `style.family` (any installed sans font when
// missing).
QImage stampWatermark(const QImage& picture, const QString& text, const WatermarkStyle& style);

} // namespace lumaro::testing
