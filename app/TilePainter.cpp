// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TilePainter.h"

#include "browse/hotkeys/HotkeyAction.h"

#include <QCoreApplication>
#include <QPainter>

#include <algorithm>

namespace lumaro::app {

QColor TilePainter::colorOfTag(const QString& name)
{
    if (const auto action = browse::annotateActionForColor(name))
        return browse::symbolColor(*action);
    return QColor(Qt::gray);
}

QRect TilePainter::fitted(const QSize& image, const QRect& bounds)
{
    if (image.isEmpty())
        return bounds;
    const QSize size = image.scaled(bounds.size(), Qt::KeepAspectRatio);
    return QRect(bounds.x() + (bounds.width() - size.width()) / 2, bounds.y() + (bounds.height() - size.height()) / 2,
                 size.width(), size.height());
}

void TilePainter::paintColorDots(QPainter& painter, const QRect& area, const QStringList& colors, int diameter)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    int x = area.right() - diameter - 4;
    for (auto it = colors.crbegin(); it != colors.crend(); ++it) {
        painter.setPen(QPen(Qt::white, 1.5));
        painter.setBrush(colorOfTag(*it));
        painter.drawEllipse(QRect(x, area.top() + 4, diameter, diameter));
        x -= diameter + 3;
    }
    painter.restore();
}

void TilePainter::paintMarks(QPainter& painter, const QRect& area, const platform::PictureMarks& marks,
                             int height)
{
    if (!marks.hasRating())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (marks.flag == platform::PickFlag::rejected)
        painter.fillRect(area, QColor(0, 0, 0, 140));
    QFont font = painter.font();
    font.setPixelSize(height);
    font.setBold(true);
    painter.setFont(font);
    QString text;
    if (marks.flag == platform::PickFlag::picked)
        text += QStringLiteral("✔ ");
    else if (marks.flag == platform::PickFlag::rejected)
        text += QStringLiteral("✖ ");
    text += QString(marks.stars, QChar(0x2605));
    const QRect box = painter.fontMetrics().boundingRect(text).adjusted(-4, -2, 4, 2);
    const QRect badge(area.left() + 4, area.bottom() - box.height() - 4, box.width(), box.height());
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 150));
    painter.drawRoundedRect(badge, 3, 3);
    painter.setPen(marks.flag == platform::PickFlag::rejected ? QColor(255, 90, 90)
                   : marks.flag == platform::PickFlag::picked ? QColor(110, 230, 110)
                                                              : QColor(255, 210, 60));
    painter.drawText(badge, Qt::AlignCenter, text);
    painter.restore();
}

void TilePainter::paint(QPainter& painter, const QRect& cell, const Tile& tile)
{
    const QRect inner = cell.adjusted(4, 4, -4, -4);
    if (tile.image && !tile.image->isNull()) {
        painter.drawImage(fitted(tile.image->size(), inner), *tile.image);
    } else {
        painter.fillRect(inner, QColor(60, 60, 60));
        painter.setPen(QColor(170, 170, 170));
        const QString text = tile.failed ? QCoreApplication::translate("TilePainter", "无法读取")
                                         : QCoreApplication::translate("TilePainter", "加载中…");
        painter.drawText(inner, Qt::AlignCenter, text);
    }
    if (!tile.colors.isEmpty())
        paintColorDots(painter, inner, tile.colors, std::max(8, inner.width() / 14));
    paintMarks(painter, inner, tile.marks, std::clamp(inner.width() / 12, 9, 16));
    if (tile.selected) {
        painter.setPen(QPen(QColor(0, 140, 255), 3));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(cell.adjusted(1, 1, -2, -2));
    }
}

} // namespace lumaro::app
