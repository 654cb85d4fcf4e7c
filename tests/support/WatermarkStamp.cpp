// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/WatermarkStamp.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace lumaro::testing {

QImage stampWatermark(const QImage& picture, const QString& text, const WatermarkStyle& style)
{
    QImage out = picture.convertToFormat(QImage::Format_RGB32);
    QPainter painter(&out);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    QFont font(style.monospaced ? QStringLiteral("Noto Sans Mono CJK SC")
                                : QStringLiteral("Noto Sans CJK SC"));
    if (!style.family.isEmpty())
        font.setFamily(style.family);
    font.setPixelSize(std::max(6, int(out.height() * style.heightShare)));
    font.setBold(style.bold);
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const double logoSide = style.logo ? metrics.height() * 1.1 : 0;
    const double gap = style.logo ? metrics.height() * 0.3 : 0;
    const double width = logoSide + gap + metrics.horizontalAdvance(text);
    const double lines = style.platformLine.isEmpty() ? 1 : 2;
    const double margin = std::max(4.0, out.height() * style.marginShare);
    const bool left = style.place == StampPlace::topLeft || style.place == StampPlace::bottomLeft;
    const bool top = style.place == StampPlace::topLeft || style.place == StampPlace::topRight;
    double x = left ? margin : out.width() - margin - width;
    if (style.place == StampPlace::bottomCentre)
        x = (out.width() - width) / 2;
    const double y = top ? margin : out.height() - margin - lines * metrics.height();
    const double lineY = y + (lines - 1) * metrics.height();
    const double step = std::max(1.0, metrics.height() / 12);
    const auto draw = [&](QColor colour, QPointF offset) {
        painter.setPen(colour);
        painter.setBrush(colour);
        if (style.logo) {
            QPainterPath mark;
            mark.addRoundedRect(QRectF(QPointF(x, lineY) + offset, QSizeF(logoSide, logoSide)), logoSide / 4,
                                logoSide / 4);
            painter.drawPath(mark);
        }
        if (!style.platformLine.isEmpty())
            painter.drawText(QPointF(x + logoSide + gap, y + metrics.ascent()) + offset, style.platformLine);
        painter.drawText(QPointF(x + logoSide + gap, lineY + metrics.ascent()) + offset, text);
    };
    painter.setOpacity(style.opacity);
    if (style.shadow)
        draw(QColor(0, 0, 0, 150), QPointF(step, step));
    draw(style.colour, QPointF());
    return out;
}

} // namespace lumaro::testing
