// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FilmStripMode.h"

#include "app/PreviewView.h"
#include "app/ThumbnailGridView.h"

#include <QVBoxLayout>

namespace lumaro::app {

FilmStripMode::FilmStripMode(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent)
    : BrowseMode(QStringLiteral("LMRMode2View"), tr("胶片条"), state, parent)
    , m_preview(new PreviewView(state, loader, this))
    , m_strip(new ThumbnailGridView(state, loader, ThumbnailGridView::Shape::strip, this))
{
    m_strip->setFixedHeight(150);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_preview, 1);
    layout->addWidget(m_strip);
    addOverlay();
}

ThumbnailScrollView& FilmStripMode::thumbnails()
{
    return *m_strip;
}

} // namespace lumaro::app
