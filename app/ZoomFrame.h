// SPDX-License-Identifier: GPL-3.0-or-later
// Where a picture lies in a view at a zoom level and a point looked at: shared by the loupe and the compare
// view, whose panes all look at the same place.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSize>

namespace lumaro::app {

// A value. The point looked at is kept as shares (0–1) of the picture's width and height, so it means the
// same spot in pictures of other sizes (the next frame of a burst, a neighbour in the compare view).
struct ZoomFrame
{
    static constexpr double fit = 0.0;

    double zoom = 1.0; // fit, 1 (100 %) or 2 (200 %)
    QPointF centre{0.5, 0.5};

    // The rectangle (in `view`'s coordinates) the picture of `imageSize` pixels is drawn into. A picture
    // that is not yet the full-size one is always fitted; a picture smaller than the view on one side is
    // centred on that side. `pixelRatio` is the screen's device pixel ratio: 100 % is one picture pixel per
    // screen pixel.
    QRectF place(const QSize& imageSize, bool isFullSize, const QRectF& view, double pixelRatio) const;
    // Fit → 100 % → 200 % and back, by `steps`.
    void zoomBy(int steps);
    // Moves the point looked at by a drag of `moved` over a picture drawn as `shown`.
    void pan(const QPointF& moved, const QRectF& shown);
};

} // namespace lumaro::app
