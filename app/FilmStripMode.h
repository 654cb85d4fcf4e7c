// SPDX-License-Identifier: GPL-3.0-or-later
// Mode 2: one large picture above a strip of thumbnails.
#pragma once

#include "app/BrowseMode.h"

namespace lumaro::app {

class PreviewView;
class ThumbnailGridView;

// Main thread.
class FilmStripMode : public BrowseMode
{
    Q_OBJECT
public:
    FilmStripMode(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent = nullptr);
    ThumbnailScrollView& thumbnails() override;
    PreviewView& preview() { return *m_preview; }

private:
    PreviewView* m_preview;
    ThumbnailGridView* m_strip;
};

} // namespace lumaro::app
