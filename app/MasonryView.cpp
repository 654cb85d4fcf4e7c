// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MasonryView.h"

#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailLoader.h"

#include <algorithm>
#include <cmath>

namespace lumaro::app {

namespace {
constexpr double defaultAspect = 0.75;
}

MasonryView::MasonryView(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent)
    : ThumbnailScrollView(state, loader, parent)
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void MasonryView::thumbnailArrived(const QString& path, const QImage& image)
{
    ThumbnailScrollView::thumbnailArrived(path, image);
    if (image.width() <= 0)
        return;
    const double aspect = double(image.height()) / image.width();
    const double before = m_aspects.value(path, defaultAspect);
    m_aspects.insert(path, aspect);
    if (std::abs(before - aspect) > 0.01 && isVisible())
        layoutChanged();
}

void MasonryView::relayout()
{
    const int columns = std::max(1, state().imagesPerRow());
    const int width = std::max(24, viewport()->width() / columns);
    QList<int> heights(columns, 0);
    m_rects.clear();
    m_rects.reserve(count());
    for (int i = 0; i < count(); ++i) {
        const int column = int(std::min_element(heights.cbegin(), heights.cend()) - heights.cbegin());
        const int height = std::max(16, int(width * m_aspects.value(pathOf(i), defaultAspect)));
        m_rects.append(QRect(column * width, heights[column], width, height));
        heights[column] += height;
    }
    m_height = heights.isEmpty() ? 0 : *std::max_element(heights.cbegin(), heights.cend());
}

QRect MasonryView::itemRect(int index) const
{
    return index >= 0 && index < m_rects.size() ? m_rects.at(index) : QRect();
}

QSize MasonryView::contentSize() const
{
    return QSize(viewport()->width(), m_height);
}

} // namespace lumaro::app
