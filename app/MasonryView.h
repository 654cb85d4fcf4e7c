// SPDX-License-Identifier: GPL-3.0-or-later
// The waterfall: thumbnails in their own aspect ratios, stacked into `imagesPerRow` columns, each tile going to
// the shortest column.
#pragma once

#include "app/ThumbnailScrollView.h"

#include <QHash>
#include <QList>
#include <QRect>

namespace lumaro::app {

// Main thread. A tile whose thumbnail is not decoded yet takes a 4:3 place; when the thumbnail arrives with
// another shape the columns are laid out again.
class MasonryView : public ThumbnailScrollView
{
    Q_OBJECT
public:
    MasonryView(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent = nullptr);

protected:
    QRect itemRect(int index) const override;
    QSize contentSize() const override;
    void relayout() override;

private:
    void thumbnailArrived(const QString& path, const QImage& image) override;

    QList<QRect> m_rects;
    int m_height = 0;
    QHash<QString, double> m_aspects; // height / width, by path
};

} // namespace lumaro::app
