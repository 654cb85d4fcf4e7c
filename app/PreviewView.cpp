// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PreviewView.h"

#include "app/TilePainter.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailLoader.h"

#include <QFileInfo>

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

namespace lumaro::app {

PreviewView::PreviewView(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_loader(loader)
{
    setMinimumSize(200, 150);
    setAutoFillBackground(true);
    QPalette dark = palette();
    dark.setColor(QPalette::Window, QColor(20, 20, 20));
    setPalette(dark);
    connect(&state, &browse::LMRModeState::selectionChanged, this, &PreviewView::selectionChanged);
    connect(&state, &browse::LMRModeState::imageFilesChanged, this, &PreviewView::selectionChanged);
    connect(&state, &browse::LMRModeState::perFileDataChanged, this, qOverload<>(&QWidget::update));
    const auto mine = [this](const QString& path) {
        if (path == m_path)
            refreshImage();
    };
    connect(&loader, &browse::ThumbnailLoader::previewReady, this, mine);
    connect(&loader, &browse::ThumbnailLoader::thumbnailReady, this, mine);
    connect(&loader, &browse::ThumbnailLoader::invalidated, this, [this](const QString& path) {
        if (path == m_path)
            selectionChanged();
    });
}

QString PreviewView::pathOf(int index) const
{
    const auto folder = m_state.currentFolder();
    if (!folder || index < 0 || index >= m_state.imageFiles().size())
        return {};
    return *folder + QLatin1Char('/') + m_state.imageFiles().at(index);
}

void PreviewView::selectionChanged()
{
    const auto index = m_state.selectedImageIndex();
    m_path = index ? pathOf(*index) : QString();
    refreshImage();
    if (!isVisible() || !index)
        return;
    QStringList neighbours;
    for (int step : {1, -1, 2}) {
        const QString path = pathOf(*index + (m_state.lastNavigationDirection == browse::NavigationDirection::previous
                                                  ? -step
                                                  : step));
        if (!path.isEmpty())
            neighbours.append(path);
    }
    m_loader.requestPreview(m_path, neighbours);
}

void PreviewView::refreshImage()
{
    m_image = QImage();
    m_isPreview = false;
    if (!m_path.isEmpty()) {
        if (const auto preview = m_loader.preview(m_path)) {
            m_image = *preview;
            m_isPreview = true;
        } else if (const auto thumb = m_loader.thumbnail(m_path)) {
            m_image = *thumb;
        }
    }
    update();
}

void PreviewView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (m_path.isEmpty() || m_image.isNull())
        return;
    const QRectF shown(TilePainter::fitted(m_image.size(), rect().adjusted(8, 8, -8, -8)));
    const QPointF at = event->position() - shown.topLeft();
    Q_EMIT loupeRequested(
        QPointF(std::clamp(at.x() / shown.width(), 0.0, 1.0), std::clamp(at.y() / shown.height(), 0.0, 1.0)));
}

void PreviewView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    selectionChanged();
}

void PreviewView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect area = rect().adjusted(8, 8, -8, -8);
    if (m_path.isEmpty())
        return;
    if (m_image.isNull()) {
        painter.setPen(QColor(170, 170, 170));
        const bool failed = m_loader.hasFailed(m_path, browse::PictureKind::preview);
        painter.drawText(area, Qt::AlignCenter, failed ? tr("无法读取此图片") : tr("正在加载…"));
    } else {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(TilePainter::fitted(m_image.size(), area), m_image);
    }
    const QString name = QFileInfo(m_path).fileName();
    const QStringList colors = m_state.imageAnnotations().value(name).colors;
    TilePainter::paintColorDots(painter, area, colors, 18);
    TilePainter::paintMarks(painter, area, m_state.rating(name), 20);
}

} // namespace lumaro::app
