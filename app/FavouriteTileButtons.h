// SPDX-License-Identifier: GPL-3.0-or-later
// The heart and type buttons drawn in a waterfall tile's lower-left corner, and what a click on them does.
#pragma once

#include "app/FavouriteToggle.h"

#include <QPoint>
#include <QRect>
#include <QString>

class QPainter;
class QWidget;

namespace lumaro::app {

// Main thread. Tiles are painted, not widgets, so the buttons are a painting plus a hit test: a view calls paint()
// after drawing the tile and offers each mouse press to click() first; a press that lands on a button is consumed
// (it does not select the picture). A tile too small for the buttons gets none.
class FavouriteTileButtons
{
public:
    static QRect heartRect(const QRect& cell);
    static QRect typeRect(const QRect& cell);
    // The text the type button shows: the type's badge ("SSS", "♦"), or "☆" when the picture has none.
    static QString typeBadge(const FavouriteToggle::Mark& mark);

    static void paint(QPainter& painter, const QRect& cell, const FavouriteToggle::Mark& mark);
    // Left button on the heart toggles it; on the type button a menu of the eleven types and "清除类型" opens
    // under it. Returns whether the press hit a button.
    static bool click(FavouriteToggle& toggle, const QString& path, const QRect& cell, const QPoint& position,
                      QWidget* menuParent);
};

} // namespace lumaro::app
