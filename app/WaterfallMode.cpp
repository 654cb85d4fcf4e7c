// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WaterfallMode.h"

#include "app/FavouriteMasonryView.h"
#include "library/FavourManager.h"

#include <QVBoxLayout>

namespace lumaro::app {

WaterfallMode::WaterfallMode(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent)
    : BrowseMode(QStringLiteral("LMRMode3View"), tr("瀑布流"), state, parent)
    , m_masonry(new FavouriteMasonryView(state, loader, library::FavourManager::shared(), this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_masonry);
    addOverlay();
}

ThumbnailScrollView& WaterfallMode::thumbnails()
{
    return *m_masonry;
}

} // namespace lumaro::app
