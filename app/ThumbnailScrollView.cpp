// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ThumbnailScrollView.h"

#include "app/TilePainter.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailLoader.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace lumaro::app {

ThumbnailScrollView::ThumbnailScrollView(browse::LMRModeState& state, browse::ThumbnailLoader& loader,
                                         QWidget* parent)
    : QAbstractScrollArea(parent)
    , m_state(state)
    , m_loader(loader)
{
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setAutoFillBackground(true);
    // A scroll area's viewport fills with Base, not Window: both are set, or the light text lands on white.
    QPalette dark = viewport()->palette();
    dark.setColor(QPalette::Window, QColor(32, 32, 32));
    dark.setColor(QPalette::Base, QColor(32, 32, 32));
    dark.setColor(QPalette::Text, QColor(200, 200, 200));
    viewport()->setPalette(dark);
    connect(&state, &browse::LMRModeState::imageFilesChanged, this, &ThumbnailScrollView::listChanged);
    connect(&state, &browse::LMRModeState::layoutChanged, this, &ThumbnailScrollView::layoutChanged);
    connect(&state, &browse::LMRModeState::selectionChanged, this, [this] {
        ensureSelectionVisible();
        viewport()->update();
    });
    connect(&state, &browse::LMRModeState::perFileDataChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&state, &browse::LMRModeState::stateChanged, viewport(), qOverload<>(&QWidget::update));
    connect(&loader, &browse::ThumbnailLoader::thumbnailReady, this, &ThumbnailScrollView::thumbnailArrived);
    connect(&loader, &browse::ThumbnailLoader::invalidated, this, [this](const QString& path) {
        m_tiles.remove(path);
        requestVisible();
        viewport()->update();
    });
}

void ThumbnailScrollView::setEmptyText(const QString& text)
{
    m_emptyText = text;
    viewport()->update();
}

int ThumbnailScrollView::count() const
{
    return int(m_state.imageFiles().size());
}

QString ThumbnailScrollView::pathOf(int index) const
{
    const auto folder = m_state.currentFolder();
    if (!folder || index < 0 || index >= count())
        return {};
    const QString& name = m_state.imageFiles().at(index);
    // A file name never holds a '/': an entry that starts with one is a whole path (a list of pictures from
    // many folders, as the favourites and the bundles show).
    if (name.startsWith(QLatin1Char('/')))
        return name;
    return *folder + QLatin1Char('/') + name;
}

QPoint ThumbnailScrollView::offset() const
{
    return QPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
}

QRect ThumbnailScrollView::viewportRect(int index) const
{
    return itemRect(index).translated(-offset());
}

QImage ThumbnailScrollView::tileImage(int index) const
{
    return m_tiles.value(pathOf(index));
}

void ThumbnailScrollView::thumbnailArrived(const QString& path, const QImage& image)
{
    if (!m_onScreen.contains(path))
        return;
    m_tiles.insert(path, image);
    viewport()->update();
}

QList<int> ThumbnailScrollView::visibleIndices() const
{
    QList<int> indices;
    const QRect screen = viewport()->rect();
    for (int i = 0; i < count(); ++i) {
        if (viewportRect(i).intersects(screen))
            indices.append(i);
    }
    return indices;
}

void ThumbnailScrollView::layoutChanged()
{
    relayout();
    updateScrollBars();
    ensureSelectionVisible();
    requestVisible();
    viewport()->update();
}

void ThumbnailScrollView::listChanged()
{
    m_awaitingFirstScreen = count() > 0;
    layoutChanged();
}

void ThumbnailScrollView::updateScrollBars()
{
    const QSize content = contentSize();
    const QSize view = viewport()->size();
    verticalScrollBar()->setRange(0, std::max(0, content.height() - view.height()));
    verticalScrollBar()->setPageStep(view.height());
    verticalScrollBar()->setSingleStep(std::max(20, view.height() / 10));
    horizontalScrollBar()->setRange(0, std::max(0, content.width() - view.width()));
    horizontalScrollBar()->setPageStep(view.width());
    horizontalScrollBar()->setSingleStep(std::max(20, view.width() / 10));
}

void ThumbnailScrollView::ensureSelectionVisible()
{
    const auto index = m_state.selectedImageIndex();
    if (!index)
        return;
    const QRect item = viewportRect(*index);
    const QRect screen = viewport()->rect();
    if (scrollOrientation() == Qt::Vertical) {
        QScrollBar* bar = verticalScrollBar();
        if (item.top() < 0)
            bar->setValue(bar->value() + item.top());
        else if (item.bottom() > screen.bottom())
            bar->setValue(bar->value() + item.bottom() - screen.bottom());
        return;
    }
    QScrollBar* bar = horizontalScrollBar();
    // The strip keeps the selection near the middle, so the pictures ahead are in sight.
    bar->setValue(bar->value() + item.center().x() - screen.center().x());
}

void ThumbnailScrollView::requestVisible()
{
    if (!isVisible() || count() == 0) {
        m_onScreen.clear();
        m_tiles.clear();
        return;
    }
    const QList<int> visible = visibleIndices();
    m_onScreen.clear();
    QStringList missing;
    for (int i : visible) {
        const QString path = pathOf(i);
        m_onScreen.insert(path);
        if (m_tiles.contains(path))
            continue;
        if (const auto image = m_loader.thumbnail(path))
            m_tiles.insert(path, *image);
        else
            missing.append(path);
    }
    m_tiles.removeIf([this](QHash<QString, QImage>::iterator tile) { return !m_onScreen.contains(tile.key()); });
    // The next two screens ahead and one behind, so scrolling on finds them ready; no more than the cache holds
    // beside the tiles on screen, or the prefetch would push out what it fetched before it is needed.
    QStringList ahead;
    const int span = std::max<int>(1, int(visible.size()));
    const int room = std::max(0, browse::ThumbnailCache::maxCacheSize - int(visible.size()));
    const int last = visible.isEmpty() ? 0 : visible.constLast();
    const int first = visible.isEmpty() ? 0 : visible.constFirst();
    for (int i = last + 1; i < std::min(count(), last + 1 + 2 * span) && ahead.size() < room; ++i)
        ahead.append(pathOf(i));
    for (int i = first - 1; i >= std::max(0, first - span) && ahead.size() < room; --i)
        ahead.append(pathOf(i));
    m_loader.requestThumbnails(missing, ahead);
}

void ThumbnailScrollView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    if (count() == 0) {
        if (!m_state.isLoadingImages && !m_emptyText.isEmpty()) {
            painter.setPen(viewport()->palette().color(QPalette::Text));
            painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap, m_emptyText);
        }
        return;
    }
    const QRect screen = viewport()->rect();
    const auto selected = m_state.selectedImageIndex();
    const auto& annotations = m_state.imageAnnotations();
    for (int i = 0; i < count(); ++i) {
        const QRect rect = viewportRect(i);
        if (!rect.intersects(screen))
            continue;
        const QString path = pathOf(i);
        const auto held = m_tiles.constFind(path);
        Tile tile;
        tile.image = held != m_tiles.constEnd() ? &*held : nullptr;
        tile.failed = m_loader.hasFailed(path, browse::PictureKind::thumbnail);
        tile.selected = selected == i;
        tile.colors = annotations.value(m_state.imageFiles().at(i)).colors;
        tile.marks = m_state.rating(m_state.imageFiles().at(i));
        TilePainter::paint(painter, rect, tile);
    }
    if (m_awaitingFirstScreen)
        checkFirstScreen();
}

void ThumbnailScrollView::checkFirstScreen()
{
    const QList<int> visible = visibleIndices();
    for (int i : visible) {
        const QString path = pathOf(i);
        if (!m_tiles.contains(path) && !m_loader.hasFailed(path, browse::PictureKind::thumbnail))
            return;
    }
    m_awaitingFirstScreen = false;
    Q_EMIT firstScreenComplete(int(visible.size()));
}

void ThumbnailScrollView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    layoutChanged();
}

void ThumbnailScrollView::scrollContentsBy(int, int)
{
    viewport()->update();
    requestVisible();
}

void ThumbnailScrollView::mousePressEvent(QMouseEvent* event)
{
    const QPoint at = event->position().toPoint();
    for (int i = 0; i < count(); ++i) {
        if (viewportRect(i).contains(at)) {
            m_state.select(i);
            return;
        }
    }
}

void ThumbnailScrollView::keyPressEvent(QKeyEvent* event)
{
    event->ignore(); // the window's key monitor turns keys into actions
}

void ThumbnailScrollView::showEvent(QShowEvent* event)
{
    QAbstractScrollArea::showEvent(event);
    layoutChanged();
}

void ThumbnailScrollView::hideEvent(QHideEvent* event)
{
    QAbstractScrollArea::hideEvent(event);
    m_onScreen.clear();
    m_tiles.clear(); // a hidden mode holds nothing; it takes its tiles again when shown
}

} // namespace lumaro::app
