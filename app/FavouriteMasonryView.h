// SPDX-License-Identifier: GPL-3.0-or-later
// The waterfall with a heart and a type button on every tile.
#pragma once

#include "app/MasonryView.h"

namespace lumaro::library {
class FavourManager;
}

namespace lumaro::app {

class FavouriteToggle;

// Main thread. A press on a tile's button marks the picture and does not select it; a press anywhere else on the
// tile selects as in any other mode. Tiles repaint when a mark flips, here or in another view.
class FavouriteMasonryView : public MasonryView
{
    Q_OBJECT
public:
    FavouriteMasonryView(browse::LMRModeState& state, browse::ThumbnailLoader& loader,
                         library::FavourManager& manager, QWidget* parent = nullptr);

    FavouriteToggle& favourites() { return *m_toggle; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    FavouriteToggle* m_toggle;
};

} // namespace lumaro::app
