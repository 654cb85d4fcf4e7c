// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ThumbnailGridView.h"

#include "browse/state/LMRModeState.h"

namespace lumaro::app {

ThumbnailGridView::ThumbnailGridView(browse::LMRModeState& state, browse::ThumbnailLoader& loader, Shape shape,
                                     QWidget* parent)
    : ThumbnailScrollView(state, loader, parent)
    , m_shape(shape)
{
    if (shape == Shape::strip) {
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    } else {
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
}

Qt::Orientation ThumbnailGridView::scrollOrientation() const
{
    return m_shape == Shape::strip ? Qt::Horizontal : Qt::Vertical;
}

int ThumbnailGridView::columns() const
{
    return std::max(1, state().imagesPerRow());
}

int ThumbnailGridView::cellSize() const
{
    if (m_shape == Shape::strip)
        return std::max(24, viewport()->height());
    return std::max(24, viewport()->width() / columns());
}

QRect ThumbnailGridView::itemRect(int index) const
{
    const int cell = cellSize();
    if (m_shape == Shape::strip)
        return QRect(index * cell, 0, cell, cell);
    return QRect((index % columns()) * cell, (index / columns()) * cell, cell, cell);
}

QSize ThumbnailGridView::contentSize() const
{
    const int cell = cellSize();
    if (m_shape == Shape::strip)
        return QSize(count() * cell, cell);
    const int rows = (count() + columns() - 1) / columns();
    return QSize(viewport()->width(), rows * cell);
}

} // namespace lumaro::app
