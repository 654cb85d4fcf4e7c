// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LoupeView.h"

#include "app/TilePainter.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/FullPictureLoader.h"
#include "browse/thumbnails/ThumbnailLoader.h"

#include <QEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <array>

namespace lumaro::app {

namespace {

constexpr std::array<double, 3> kZooms{LoupeView::fitZoom, 1.0, 2.0};

} // namespace

LoupeView::LoupeView(browse::LMRModeState& state, browse::ThumbnailLoader& previews,
                     browse::FullPictureLoader& full, QWidget* parent)
    : QWidget(parent), m_state(state), m_previews(previews), m_full(full)
{
    setAutoFillBackground(true);
    QPalette dark = palette();
    dark.setColor(QPalette::Window, QColor(12, 12, 12));
    setPalette(dark);
    setCursor(Qt::OpenHandCursor);
    hide();
    parent->installEventFilter(this);
    connect(&state, &browse::LMRModeState::selectionChanged, this, &LoupeView::follow);
    connect(&state, &browse::LMRModeState::imageFilesChanged, this, &LoupeView::follow);
    connect(&state, &browse::LMRModeState::perFileDataChanged, this, qOverload<>(&QWidget::update));
    connect(&full, &browse::FullPictureLoader::ready, this, [this](const QString& path) {
        if (path == m_path)
            refresh();
    });
    connect(&previews, &browse::ThumbnailLoader::previewReady, this, [this](const QString& path) {
        if (path == m_path && !m_isFull)
            refresh();
    });
}

void LoupeView::open(std::optional<QPointF> centre)
{
    m_zoom = 1.0;
    m_centre = centre.value_or(QPointF(0.5, 0.5));
    setGeometry(parentWidget()->rect());
    show();
    raise();
    follow();
}

void LoupeView::close()
{
    hide();
    m_full.clear();
    m_path.clear();
    m_image = QImage();
}

void LoupeView::zoomBy(int steps)
{
    const auto at = std::find(kZooms.begin(), kZooms.end(), m_zoom);
    const qsizetype index = at == kZooms.end() ? 1 : at - kZooms.begin();
    m_zoom = kZooms.at(size_t(std::clamp<qsizetype>(index + steps, 0, qsizetype(kZooms.size()) - 1)));
    update();
}

void LoupeView::follow()
{
    if (!isOpen())
        return;
    const auto index = m_state.selectedImageIndex();
    const auto folder = m_state.currentFolder();
    m_path = index && folder ? *folder + QLatin1Char('/') + m_state.imageFiles().at(*index) : QString();
    QStringList ahead;
    if (index && folder) {
        const bool backwards = m_state.lastNavigationDirection == browse::NavigationDirection::previous;
        const int next = *index + (backwards ? -1 : 1);
        if (next >= 0 && next < m_state.imageFiles().size())
            ahead << *folder + QLatin1Char('/') + m_state.imageFiles().at(next);
    }
    m_full.request(m_path, ahead);
    if (!m_path.isEmpty())
        m_previews.requestPreview(m_path);
    refresh();
}

void LoupeView::refresh()
{
    m_image = QImage();
    m_isFull = false;
    if (const auto full = m_full.image(m_path)) {
        m_image = *full;
        m_isFull = true;
    } else if (const auto preview = m_previews.preview(m_path)) {
        m_image = *preview;
    } else if (const auto thumb = m_previews.thumbnail(m_path)) {
        m_image = *thumb;
    }
    update();
}

QRectF LoupeView::imageRect() const
{
    if (m_image.isNull())
        return {};
    if (!m_isFull || m_zoom == fitZoom)
        return QRectF(TilePainter::fitted(m_image.size(), rect()));
    const QSizeF size = QSizeF(m_image.size()) * m_zoom / devicePixelRatioF();
    QPointF topLeft = QPointF(width() / 2.0, height() / 2.0) -
                      QPointF(m_centre.x() * size.width(), m_centre.y() * size.height());
    // A picture smaller than the view stays centred on that side.
    if (size.width() <= width())
        topLeft.setX((width() - size.width()) / 2.0);
    if (size.height() <= height())
        topLeft.setY((height() - size.height()) / 2.0);
    return QRectF(topLeft, size);
}

void LoupeView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_path.isEmpty())
        return;
    painter.setPen(QColor(200, 200, 200));
    if (m_image.isNull()) {
        painter.drawText(rect(), Qt::AlignCenter,
                         m_full.hasFailed(m_path) ? tr("无法读取此图片") : tr("正在加载…"));
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform, !m_isFull || m_zoom == fitZoom);
    painter.drawImage(imageRect(), m_image);
    const QString name = m_path.section(QLatin1Char('/'), -1);
    TilePainter::paintMarks(painter, rect().adjusted(8, 8, -8, -8), m_state.rating(name), 20);
    QString status = m_zoom == fitZoom ? tr("适合窗口") : QStringLiteral("%1 %").arg(qRound(m_zoom * 100));
    if (!m_isFull)
        status = m_full.hasFailed(m_path) ? tr("无法解码原图") : tr("正在载入原图…");
    const QString line = name + QStringLiteral("  ·  ") + status;
    const QRect box = painter.fontMetrics().boundingRect(line).adjusted(-8, -4, 8, 4);
    const QRect badge(8, 8, box.width(), box.height());
    painter.fillRect(badge, QColor(0, 0, 0, 160));
    painter.drawText(badge, Qt::AlignCenter, line);
}

void LoupeView::wheelEvent(QWheelEvent* event)
{
    zoomBy(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
}

void LoupeView::mousePressEvent(QMouseEvent* event)
{
    m_dragFrom = event->position();
    setCursor(Qt::ClosedHandCursor);
}

void LoupeView::mouseMoveEvent(QMouseEvent* event)
{
    const QRectF shown = imageRect();
    if (!(event->buttons() & Qt::LeftButton) || shown.isEmpty() || m_zoom == fitZoom)
        return;
    const QPointF moved = event->position() - m_dragFrom;
    m_dragFrom = event->position();
    m_centre -= QPointF(moved.x() / shown.width(), moved.y() / shown.height());
    m_centre = QPointF(std::clamp(m_centre.x(), 0.0, 1.0), std::clamp(m_centre.y(), 0.0, 1.0));
    update();
}

void LoupeView::mouseReleaseEvent(QMouseEvent*)
{
    setCursor(Qt::OpenHandCursor);
}

void LoupeView::mouseDoubleClickEvent(QMouseEvent*)
{
    close();
}

bool LoupeView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize && isOpen())
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

} // namespace lumaro::app
