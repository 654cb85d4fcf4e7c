// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HistogramOverlay.h"

#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailLoader.h"

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QThreadPool>

#include <algorithm>

namespace lumaro::app {

namespace {

constexpr int kWidth = 300;
constexpr int kHeight = 170;
constexpr int kMargin = 12;

QPainterPath curve(const report::ToneHistogram::Bins& bins, quint32 peak, const QRectF& box)
{
    QPainterPath path(QPointF(box.left(), box.bottom()));
    for (int level = 0; level < 256; ++level) {
        const double x = box.left() + box.width() * level / 255.0;
        path.lineTo(x, box.bottom() - box.height() * std::min(1.0, double(bins[std::size_t(level)]) / peak));
    }
    path.lineTo(box.right(), box.bottom());
    return path;
}

} // namespace

HistogramOverlay::HistogramOverlay(browse::LMRModeState& state, browse::ThumbnailLoader& loader,
                                   QWidget* parent)
    : QWidget(parent), m_state(state), m_loader(loader)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(kWidth, kHeight);
    hide();
    parent->installEventFilter(this);
    connect(&m_state, &browse::LMRModeState::selectionChanged, this, &HistogramOverlay::follow);
    connect(&m_state, &browse::LMRModeState::imageFilesChanged, this, &HistogramOverlay::follow);
    connect(&m_loader, &browse::ThumbnailLoader::previewReady, this, [this](const QString& path) {
        if (path == m_wantedPath && !m_shownFromPreview)
            follow();
    });
}

void HistogramOverlay::toggle()
{
    setVisible(isHidden());
    if (isVisible()) {
        place();
        raise();
        follow();
    }
}

bool HistogramOverlay::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

void HistogramOverlay::place()
{
    const QWidget* host = parentWidget();
    move(host->width() - kWidth - kMargin, kMargin);
}

void HistogramOverlay::follow()
{
    if (isHidden())
        return;
    const auto folder = m_state.currentFolder();
    const auto name = m_state.selectedImageFileName();
    const QString path = folder && name ? QDir(*folder).filePath(*name) : QString();
    if (path != m_wantedPath) {
        m_wantedPath = path;
        m_shownFromPreview = false;
    }
    if (path.isEmpty()) {
        m_histogram = {};
        m_shownPath.clear();
        update();
        return;
    }
    // The decoded preview is what the photographer judges; its thumbnail stands in until it is there.
    std::optional<QImage> image = m_loader.preview(path);
    const bool fromPreview = image.has_value();
    if (!fromPreview) {
        m_loader.requestPreview(path);
        image = m_loader.thumbnail(path);
    }
    if (!image || (path == m_shownPath && !fromPreview))
        return;
    QPointer<HistogramOverlay> self(this);
    QThreadPool::globalInstance()->start([self, path, picture = *image, fromPreview] {
        const report::ToneHistogram histogram = report::ToneHistogram::of(picture);
        QMetaObject::invokeMethod(
            qApp,
            [self, path, histogram, fromPreview] {
                if (self)
                    self->present(path, histogram, fromPreview);
            },
            Qt::QueuedConnection);
    });
}

void HistogramOverlay::present(const QString& path, const report::ToneHistogram& histogram, bool fromPreview)
{
    if (path != m_wantedPath || (m_shownFromPreview && !fromPreview))
        return; // the selection moved on, or the full preview was counted already
    m_shownPath = path;
    m_shownFromPreview = fromPreview;
    m_histogram = histogram;
    update();
}

void HistogramOverlay::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(20, 20, 20, 200));
    painter.drawRoundedRect(rect(), 6, 6);
    const QRectF box(10, 10, width() - 20, height() - 42);
    painter.setPen(QColor(230, 230, 230));
    if (m_histogram.isEmpty()) {
        painter.drawText(rect(), Qt::AlignCenter, tr("直方图：等待图片"));
        return;
    }
    quint32 peak = 1;
    // The tallest spike of the ends often dwarfs the rest; scale to the inner levels so the shape stays
    // visible.
    for (int level = 1; level < 255; ++level)
        peak = std::max(peak, m_histogram.luminance[std::size_t(level)]);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(200, 200, 200, 110));
    painter.drawPath(curve(m_histogram.luminance, peak, box));
    const std::pair<const report::ToneHistogram::Bins*, QColor> channels[] = {
        {&m_histogram.red, QColor(255, 70, 70)},
        {&m_histogram.green, QColor(70, 220, 70)},
        {&m_histogram.blue, QColor(90, 140, 255)}};
    painter.setBrush(Qt::NoBrush);
    for (const auto& [bins, colour] : channels) {
        painter.setPen(QPen(colour, 1.2));
        painter.drawPath(curve(*bins, peak, box));
    }
    // Clipped ends: a mark at each edge, lit when any pixel is clipped, with its share.
    const double shadows = m_histogram.shadowPercent();
    const double highlights = m_histogram.highlightPercent();
    painter.setPen(Qt::NoPen);
    painter.setBrush(shadows > 0 ? QColor(80, 150, 255) : QColor(90, 90, 90));
    painter.drawPolygon(QPolygonF{{box.left(), box.bottom() + 4},
                                  {box.left() + 10, box.bottom() + 4},
                                  {box.left(), box.bottom() + 14}});
    painter.setBrush(highlights > 0 ? QColor(255, 80, 80) : QColor(90, 90, 90));
    painter.drawPolygon(QPolygonF{{box.right(), box.bottom() + 4},
                                  {box.right() - 10, box.bottom() + 4},
                                  {box.right(), box.bottom() + 14}});
    painter.setPen(QColor(230, 230, 230));
    const QRectF text(box.left() + 14, box.bottom() + 2, box.width() - 28, 28);
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter,
                     tr("暗部溢出 %1%").arg(QString::number(shadows, 'f', 1)));
    painter.drawText(text, Qt::AlignRight | Qt::AlignVCenter,
                     tr("高光溢出 %1%").arg(QString::number(highlights, 'f', 1)));
}

} // namespace lumaro::app
