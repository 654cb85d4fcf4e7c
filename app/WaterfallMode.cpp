// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WaterfallMode.h"

#include "app/FavouriteMasonryView.h"
#include "app/FolderMapView.h"
#include "library/FavourManager.h"

#include <QSplitter>
#include <QVBoxLayout>

namespace lumaro::app {

WaterfallMode::WaterfallMode(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent)
    : BrowseMode(QStringLiteral("LMRMode3View"), tr("瀑布流"), state, parent)
    , m_masonry(new FavouriteMasonryView(state, loader, library::FavourManager::shared(), this))
    , m_folderMap(new FolderMapView(state, this))
{
    auto* split = new QSplitter(Qt::Horizontal, this);
    split->addWidget(m_masonry);
    split->addWidget(m_folderMap);
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 0);
    split->setSizes({900, 220});
    split->setCollapsible(0, false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(split);
    addOverlay();
}

ThumbnailScrollView& WaterfallMode::thumbnails()
{
    return *m_masonry;
}

} // namespace lumaro::app
