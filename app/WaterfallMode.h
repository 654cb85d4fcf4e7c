// SPDX-License-Identifier: GPL-3.0-or-later
// Mode 3: the waterfall, thumbnails in their own shapes in columns.
#pragma once

#include "app/BrowseMode.h"

namespace lumaro::app {

class FolderMapView;
class MasonryView;

// Main thread.
class WaterfallMode : public BrowseMode
{
    Q_OBJECT
public:
    WaterfallMode(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent = nullptr);
    ThumbnailScrollView& thumbnails() override;
    // Beside the waterfall: the tree of the folder shown; collapsed away by dragging the splitter.
    FolderMapView& folderMap() { return *m_folderMap; }

private:
    MasonryView* m_masonry;
    FolderMapView* m_folderMap;
};

} // namespace lumaro::app
