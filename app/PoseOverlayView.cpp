// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PoseOverlayView.h"

#include "pose/SkeletonPainter.h"

#include <QPainter>

namespace lumaro::app {

PoseOverlayView::PoseOverlayView(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(160, 160);
}

void PoseOverlayView::show(const QImage& picture, std::vector<pose::AnalysedPerson> people)
{
    m_picture = picture;
    m_people = std::move(people);
    update();
}

void PoseOverlayView::clear()
{
    m_picture = {};
    m_people.clear();
    update();
}

void PoseOverlayView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
    if (m_picture.isNull())
        return;
    const QSize fitted = m_picture.size().scaled(size(), Qt::KeepAspectRatio);
    const QRectF target(QPointF((width() - fitted.width()) / 2.0, (height() - fitted.height()) / 2.0),
                        fitted);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, m_picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto onScreen = [&target](QPointF normalised) {
        return QPointF(target.left() + normalised.x() * target.width(),
                       target.top() + (1.0 - normalised.y()) * target.height());
    };

    for (std::size_t i = 0; i < m_people.size(); ++i) {
        const QColor colour = pose::SkeletonPainter::colourFor(i);
        pose::SkeletonPainter::paint(painter, m_people[i].pose, target, colour);
        const QPointF label = onScreen(QPointF(m_people[i].box.left(), m_people[i].box.bottom()));
        painter.setPen(colour);
        painter.drawText(label + QPointF(4, 14), QStringLiteral("#%1").arg(i + 1));
    }
}

} // namespace lumaro::app
