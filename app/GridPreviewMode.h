// SPDX-License-Identifier: GPL-3.0-or-later
// Mode 1: the thumbnail grid beside a large preview of the selected picture.
#pragma once

#include "app/BrowseMode.h"

namespace lumaro::app {

class PreviewView;
class ThumbnailGridView;

// Main thread.
class GridPreviewMode : public BrowseMode
{
    Q_OBJECT
public:
    GridPreviewMode(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent = nullptr);
    ThumbnailScrollView& thumbnails() override;
    PreviewView& preview() { return *m_preview; }

private:
    ThumbnailGridView* m_grid;
    PreviewView* m_preview;
};

} // namespace lumaro::app
