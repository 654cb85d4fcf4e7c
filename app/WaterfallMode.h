// SPDX-License-Identifier: GPL-3.0-or-later
// Mode 3: the waterfall, thumbnails in their own shapes in columns.
#pragma once

#include "app/BrowseMode.h"

namespace lumaro::app {

class MasonryView;

// Main thread.
class WaterfallMode : public BrowseMode
{
    Q_OBJECT
public:
    WaterfallMode(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent = nullptr);
    ThumbnailScrollView& thumbnails() override;

private:
    MasonryView* m_masonry;
};

} // namespace lumaro::app
