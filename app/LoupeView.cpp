// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/LoupeView.h"

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

namespace lumaro::app {

LoupeView::LoupeView(browse::LMRModeState& state, browse::ThumbnailLoader& previews,
                     browse::FullPictureLoader& full, QWidget* parent, browse::FaceCentreFinder* faces)
    : QWidget(parent), m_state(state), m_previews(previews), m_full(full), m_faces(faces)
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
    if (m_faces) {
        connect(m_faces, &browse::FaceCentreFinder::found, this, [this](const QString& path) {
            if (path == m_faceFor && path == m_path)
                lookAtFace();
        });
    }
}

void LoupeView::open(std::optional<QPointF> centre)
{
    m_frame.zoom = 1.0;
    m_frame.centre = centre.value_or(QPointF(0.5, 0.5));
    setGeometry(parentWidget()->rect());
    show();
    raise();
    follow();
    m_faceFor.clear();
    if (centre || !m_faces || m_path.isEmpty())
        return;
    m_faceFor = m_path;
    m_faces->request(m_path);
    lookAtFace();
}

void LoupeView::lookAtFace()
{
    const auto known = m_faces->centre(m_faceFor);
    if (!known)
        return;        // still looking
    m_faceFor.clear(); // once: from now on the user moves the view
    if (*known)
        m_frame.centre = **known;
    update();
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
    m_frame.zoomBy(steps);
    update();
}

void LoupeView::follow()
{
    if (!isOpen())
        return;
    const auto index = m_state.selectedImageIndex();
    const auto folder = m_state.currentFolder();
    m_path = index && folder ? *folder + QLatin1Char('/') + m_state.imageFiles().at(*index) : QString();
    if (m_path != m_faceFor)
        m_faceFor.clear(); // another picture: it keeps the place looked at
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
    return m_frame.place(m_image.size(), m_isFull, QRectF(rect()), devicePixelRatioF());
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
    painter.setRenderHint(QPainter::SmoothPixmapTransform, !m_isFull || m_frame.zoom == fitZoom);
    painter.drawImage(imageRect(), m_image);
    const QString name = m_path.section(QLatin1Char('/'), -1);
    TilePainter::paintColorDots(painter, rect().adjusted(8, 8, -8, -8),
                                m_state.imageAnnotations().value(name).colors, 18);
    // A small corner: a reject's veil must not darken the picture whose focus is being judged.
    TilePainter::paintMarks(painter, QRect(8, height() - 60, 260, 52), m_state.rating(name), 20);
    QString status =
        m_frame.zoom == fitZoom ? tr("适合窗口") : QStringLiteral("%1 %").arg(qRound(m_frame.zoom * 100));
    if (!m_isFull)
        status = m_full.hasFailed(m_path) ? tr("无法解码原图") : tr("正在载入原图…");
    const QString line = platform::OneLineName::of(name) + QStringLiteral("  ·  ") + status;
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
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const QPointF moved = event->position() - m_dragFrom;
    m_dragFrom = event->position();
    m_faceFor.clear(); // the user's own place wins over a face found later
    m_frame.pan(moved, imageRect());
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
