// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PictureListWaterfall.h"

#include "app/FavouriteMasonryView.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailLoader.h"

#include <QEvent>
#include <QMouseEvent>
#include <QVBoxLayout>

#include <utility>

namespace lumaro::app {

PictureListWaterfall::PictureListWaterfall(library::FavourManager& favourites, QWidget* parent)
    : QWidget(parent), m_cache(std::make_unique<browse::ThumbnailCache>()),
      m_state(new browse::LMRModeState(m_cache.get(), this))
{
    browse::ThumbnailLoader::Options options;
    options.threads = 1;
    m_loader = new browse::ThumbnailLoader(*m_cache, {}, options, this);
    m_view = new FavouriteMasonryView(*m_state, *m_loader, favourites, this);
    m_state->setImagesPerRow(3);
    // The entries are whole paths; "/" only stands for "a list is shown".
    m_state->setFolderPath(QStringLiteral("/"), QStringLiteral("/"), QStringLiteral("/"));
    m_loader->setFolder(QStringLiteral("/"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    m_view->viewport()->installEventFilter(this);
}

PictureListWaterfall::~PictureListWaterfall()
{
    // Before the state and the cache it reads; m_view is cleared first because the viewport, going down with
    // it, still passes its last events through eventFilter.
    delete std::exchange(m_view, nullptr);
}

void PictureListWaterfall::setPaths(const QStringList& paths)
{
    if (paths == m_state->imageFiles())
        return;
    m_state->setImageFiles(paths);
}

const QStringList& PictureListWaterfall::paths() const
{
    return m_state->imageFiles();
}

QString PictureListWaterfall::selectedPath() const
{
    const auto index = m_state->selectedImageIndex();
    return index && *index < paths().size() ? paths().at(*index) : QString();
}

bool PictureListWaterfall::eventFilter(QObject* watched, QEvent* event)
{
    if (m_view && watched == m_view->viewport() && event->type() == QEvent::MouseButtonDblClick) {
        const QPoint at = static_cast<QMouseEvent*>(event)->position().toPoint();
        for (const int index : m_view->visibleIndices()) {
            if (m_view->viewportRect(index).contains(at)) {
                m_state->select(index);
                Q_EMIT openRequested(paths().at(index));
                break;
            }
        }
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace lumaro::app
