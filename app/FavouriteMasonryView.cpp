// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FavouriteMasonryView.h"

#include "app/FavouriteTileButtons.h"
#include "app/FavouriteToggle.h"

#include <QMouseEvent>
#include <QPainter>

namespace lumaro::app {

FavouriteMasonryView::FavouriteMasonryView(browse::LMRModeState& state, browse::ThumbnailLoader& loader,
                                           library::FavourManager& manager, QWidget* parent)
    : MasonryView(state, loader, parent)
    , m_toggle(new FavouriteToggle(manager, this))
{
    connect(m_toggle, &FavouriteToggle::markChanged, viewport(), [this] { viewport()->update(); });
}

void FavouriteMasonryView::paintEvent(QPaintEvent* event)
{
    MasonryView::paintEvent(event);
    QPainter painter(viewport());
    for (const int index : visibleIndices())
        FavouriteTileButtons::paint(painter, viewportRect(index), m_toggle->mark(pathOf(index)));
}

void FavouriteMasonryView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        const QPoint at = event->position().toPoint();
        for (const int index : visibleIndices()) {
            const QRect cell = viewportRect(index);
            if (cell.contains(at) && FavouriteTileButtons::click(*m_toggle, pathOf(index), cell, at, viewport()))
                return;
        }
    }
    MasonryView::mousePressEvent(event);
}

} // namespace lumaro::app
