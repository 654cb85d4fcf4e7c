// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ZoomFrame.h"

#include "app/TilePainter.h"

#include <algorithm>
#include <array>

namespace lumaro::app {

namespace {

constexpr std::array<double, 3> kZooms{ZoomFrame::fit, 1.0, 2.0};

} // namespace

QRectF ZoomFrame::place(const QSize& imageSize, bool isFullSize, const QRectF& view, double pixelRatio) const
{
    if (imageSize.isEmpty())
        return {};
    if (!isFullSize || zoom == fit)
        return QRectF(TilePainter::fitted(imageSize, view.toRect()));
    const QSizeF size = QSizeF(imageSize) * zoom / pixelRatio;
    QPointF topLeft = view.center() - QPointF(centre.x() * size.width(), centre.y() * size.height());
    if (size.width() <= view.width())
        topLeft.setX(view.left() + (view.width() - size.width()) / 2.0);
    if (size.height() <= view.height())
        topLeft.setY(view.top() + (view.height() - size.height()) / 2.0);
    return QRectF(topLeft, size);
}

void ZoomFrame::zoomBy(int steps)
{
    const auto at = std::find(kZooms.begin(), kZooms.end(), zoom);
    const qsizetype index = at == kZooms.end() ? 1 : at - kZooms.begin();
    zoom = kZooms.at(size_t(std::clamp<qsizetype>(index + steps, 0, qsizetype(kZooms.size()) - 1)));
}

void ZoomFrame::pan(const QPointF& moved, const QRectF& shown)
{
    if (shown.isEmpty() || zoom == fit)
        return;
    centre -= QPointF(moved.x() / shown.width(), moved.y() / shown.height());
    centre = QPointF(std::clamp(centre.x(), 0.0, 1.0), std::clamp(centre.y(), 0.0, 1.0));
}

} // namespace lumaro::app
