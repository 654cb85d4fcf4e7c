// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CompareView.h"

#include "app/TilePainter.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/FaceCentreFinder.h"
#include "browse/thumbnails/FullPictureLoader.h"
#include "browse/thumbnails/ThumbnailLoader.h"
#include "platform/files/OneLineName.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>

namespace lumaro::app {

CompareView::CompareView(browse::LMRModeState& state, browse::ThumbnailLoader& previews,
                         browse::FullPictureLoader& full, QWidget* parent, browse::FaceCentreFinder* faces)
    : QWidget(parent), m_state(state), m_previews(previews), m_full(full), m_faces(faces)
{
    setAutoFillBackground(true);
    QPalette dark = palette();
    dark.setColor(QPalette::Window, QColor(12, 12, 12));
    setPalette(dark);
    hide();
    parent->installEventFilter(this);
    connect(&state, &browse::LMRModeState::selectionChanged, this, &CompareView::follow);
    connect(&state, &browse::LMRModeState::imageFilesChanged, this, &CompareView::follow);
    connect(&state, &browse::LMRModeState::perFileDataChanged, this, qOverload<>(&QWidget::update));
    connect(&full, &browse::FullPictureLoader::ready, this, [this](const QString& path) {
        if (m_paths.contains(path))
            update();
    });
    connect(&previews, &browse::ThumbnailLoader::previewReady, this, [this](const QString& path) {
        if (m_paths.contains(path))
            update();
    });
}

int CompareView::runStart(int start, int selected, int panes, int count)
{
    const int last = std::max(0, count - panes);
    if (selected < start)
        start = selected;
    else if (selected >= start + panes)
        start = selected - panes + 1;
    return std::clamp(start, 0, last);
}

void CompareView::step()
{
    if (!isOpen())
        return open(minPanes);
    if (m_panes >= maxPanes)
        return close();
    m_panes += 1;
    follow();
}

void CompareView::open(int panes)
{
    if (m_state.imageFiles().size() < minPanes)
        return;
    m_panes = std::clamp(panes, minPanes, maxPanes);
    m_start = m_state.selectedImageIndex().value_or(0);
    m_frame = ZoomFrame{ZoomFrame::fit};
    setGeometry(parentWidget()->rect());
    show();
    raise();
    follow();
}

void CompareView::close()
{
    hide();
    m_full.clear();
    m_paths.clear();
}

void CompareView::follow()
{
    if (!isOpen())
        return;
    const QStringList& files = m_state.imageFiles();
    const auto folder = m_state.currentFolder();
    if (files.size() < minPanes || !folder)
        return close();
    const int panes = std::min(m_panes, int(files.size()));
    m_start = runStart(m_start, m_state.selectedImageIndex().value_or(m_start), panes, int(files.size()));
    m_paths.clear();
    for (int i = m_start; i < m_start + panes; ++i)
        m_paths << *folder + QLatin1Char('/') + files.at(i);
    m_full.request(m_paths.constFirst(), m_paths.mid(1));
    if (m_faces && m_state.selectedImageIndex())
        m_faces->request(m_paths.at(*m_state.selectedImageIndex() - m_start)); // ready for the loupe key
    for (const QString& path : std::as_const(m_paths))
        m_previews.requestPreview(path);
    update();
}

bool CompareView::isShowingFullSize(const QString& path) const
{
    return m_paths.contains(path) && m_full.image(path).has_value();
}

void CompareView::zoomBy(int steps)
{
    m_frame.zoomBy(steps);
    update();
}

void CompareView::toggleZoom()
{
    if (m_frame.zoom != ZoomFrame::fit) {
        m_frame.zoom = ZoomFrame::fit;
        return update();
    }
    m_frame.zoom = 1.0;
    const auto selected = m_state.selectedImageIndex();
    if (m_faces && selected && *selected >= m_start && *selected - m_start < m_paths.size()) {
        if (const auto face = m_faces->centre(m_paths.at(*selected - m_start)); face && *face)
            m_frame.centre = **face;
    }
    update();
}

QRect CompareView::paneRect(int pane) const
{
    // Four panes as two rows of two: four columns would leave each a sliver of a landscape frame.
    const int count = int(m_paths.size());
    const int columns = count == 4 ? 2 : std::max(1, count);
    const int rows = count == 4 ? 2 : 1;
    const int w = width() / columns;
    const int h = height() / rows;
    return QRect((pane % columns) * w, (pane / columns) * h, w, h).adjusted(2, 2, -2, -2);
}

int CompareView::paneAt(const QPointF& point) const
{
    for (int pane = 0; pane < m_paths.size(); ++pane) {
        if (paneRect(pane).contains(point.toPoint()))
            return pane;
    }
    return -1;
}

QImage CompareView::imageFor(const QString& path, bool* isFull) const
{
    *isFull = false;
    if (const auto full = m_full.image(path)) {
        *isFull = true;
        return *full;
    }
    if (const auto preview = m_previews.preview(path))
        return *preview;
    return m_previews.thumbnail(path).value_or(QImage());
}

void CompareView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const auto selected = m_state.selectedImageIndex();
    for (int pane = 0; pane < m_paths.size(); ++pane) {
        const QString& path = m_paths.at(pane);
        const QRect cell = paneRect(pane);
        bool isFull = false;
        const QImage image = imageFor(path, &isFull);
        painter.save();
        painter.setClipRect(cell);
        painter.setPen(QColor(200, 200, 200));
        if (image.isNull()) {
            painter.drawText(cell, Qt::AlignCenter,
                             m_full.hasFailed(path) ? tr("无法读取此图片") : tr("正在加载…"));
        } else {
            painter.setRenderHint(QPainter::SmoothPixmapTransform, !isFull || m_frame.zoom == ZoomFrame::fit);
            painter.drawImage(m_frame.place(image.size(), isFull, QRectF(cell), devicePixelRatioF()), image);
        }
        const QString name = path.section(QLatin1Char('/'), -1);
        TilePainter::paintColorDots(painter, cell, m_state.imageAnnotations().value(name).colors, 16);
        // A small corner: a reject's veil must not darken the picture being judged.
        TilePainter::paintMarks(painter, QRect(cell.left() + 4, cell.bottom() - 48, 220, 44),
                                m_state.rating(name), 16);
        QString status = m_frame.zoom == ZoomFrame::fit
                             ? tr("适合窗口")
                             : QStringLiteral("%1 %").arg(qRound(m_frame.zoom * 100));
        if (!isFull)
            status = m_full.hasFailed(path) ? tr("无法解码原图") : tr("正在载入原图…");
        const QString line = platform::OneLineName::of(name) + QStringLiteral("  ·  ") + status;
        const QRect box = painter.fontMetrics().boundingRect(line).adjusted(-8, -4, 8, 4);
        const QRect badge(cell.left() + 6, cell.top() + 6, box.width(), box.height());
        painter.fillRect(badge, QColor(0, 0, 0, 160));
        painter.drawText(badge, Qt::AlignCenter, line);
        painter.restore();
        if (selected == m_start + pane) {
            painter.setPen(QPen(QColor(255, 170, 0), 3));
            painter.drawRect(cell.adjusted(1, 1, -2, -2));
        }
    }
}

void CompareView::wheelEvent(QWheelEvent* event)
{
    zoomBy(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
}

void CompareView::mousePressEvent(QMouseEvent* event)
{
    m_pressedAt = m_dragFrom = event->position();
    m_dragPane = paneAt(event->position());
    setCursor(Qt::ClosedHandCursor);
}

void CompareView::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton) || m_dragPane < 0 || m_dragPane >= m_paths.size())
        return;
    const QPointF moved = event->position() - m_dragFrom;
    m_dragFrom = event->position();
    bool isFull = false;
    const QImage image = imageFor(m_paths.at(m_dragPane), &isFull);
    m_frame.pan(moved,
                m_frame.place(image.size(), isFull, QRectF(paneRect(m_dragPane)), devicePixelRatioF()));
    update();
}

void CompareView::mouseReleaseEvent(QMouseEvent* event)
{
    unsetCursor();
    // A click, not a drag: that pane's picture becomes the selection.
    const bool click = (event->position() - m_pressedAt).manhattanLength() < 4;
    const int pane = paneAt(event->position());
    if (click && pane >= 0)
        m_state.select(m_start + pane);
    m_dragPane = -1;
}

bool CompareView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isOpen())
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

} // namespace lumaro::app
