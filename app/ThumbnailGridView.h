// SPDX-License-Identifier: GPL-3.0-or-later
// Square tiles: a grid of `imagesPerRow` columns, or one row (the film strip).
#pragma once

#include "app/ThumbnailScrollView.h"

namespace lumaro::app {

// Main thread.
class ThumbnailGridView : public ThumbnailScrollView
{
    Q_OBJECT
public:
    enum class Shape { grid, strip };
    ThumbnailGridView(browse::LMRModeState& state, browse::ThumbnailLoader& loader, Shape shape,
                      QWidget* parent = nullptr);

protected:
    QRect itemRect(int index) const override;
    QSize contentSize() const override;
    Qt::Orientation scrollOrientation() const override;

private:
    int columns() const;
    int cellSize() const;

    Shape m_shape;
};

} // namespace lumaro::app
