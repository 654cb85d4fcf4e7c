// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/GridPreviewMode.h"

#include "app/PreviewView.h"
#include "app/ThumbnailGridView.h"

#include <QHBoxLayout>
#include <QSplitter>

namespace lumaro::app {

GridPreviewMode::GridPreviewMode(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent)
    : BrowseMode(QStringLiteral("LMRMode1View"), tr("网格与预览"), state, parent)
{
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    m_grid = new ThumbnailGridView(state, loader, ThumbnailGridView::Shape::grid, splitter);
    m_preview = new PreviewView(state, loader, splitter);
    splitter->addWidget(m_grid);
    splitter->addWidget(m_preview);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
    addOverlay();
}

ThumbnailScrollView& GridPreviewMode::thumbnails()
{
    return *m_grid;
}

} // namespace lumaro::app
