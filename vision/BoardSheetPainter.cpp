// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/BoardSheetPainter.h"

#include "platform/files/OneLineName.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace lumaro::vision {

namespace {

const QColor kInk(30, 30, 30);
const QColor kMuted(110, 110, 110);
const QColor kFrame(200, 200, 200);

QFont fontOfHeight(int pixels, bool bold = false)
{
    // Latin letters and digits from DejaVu, whose glyphs map back to their characters in a PDF's text (file
    // names can be searched and copied); Chinese falls back to Noto Sans CJK.
    QFont font;
    font.setFamilies({QStringLiteral("DejaVu Sans"), QStringLiteral("Noto Sans CJK SC")});
    font.setPixelSize(std::max(8, pixels));
    font.setBold(bold);
    return font;
}

QColor colourOf(const QString& name)
{
    return QColor::fromString(name); // the six tag names are SVG colour names
}

QPainterPath starPath(QPointF centre, double radius)
{
    QPainterPath path;
    for (int i = 0; i < 10; ++i) {
        const double angle = -M_PI / 2 + i * M_PI / 5;
        const double r = i % 2 == 0 ? radius : radius * 0.45;
        const QPointF point(centre.x() + r * std::cos(angle), centre.y() + r * std::sin(angle));
        if (i == 0)
            path.moveTo(point);
        else
            path.lineTo(point);
    }
    path.closeSubpath();
    return path;
}

void paintHeader(QPainter& painter, const QRect& band, const BoardHeader& header, int pageNumber,
                 int pageCount)
{
    const int line = band.height() / 3;
    painter.setPen(kInk);
    painter.setFont(fontOfHeight(line, true));
    painter.drawText(
        QRect(band.left(), band.top(), band.width() * 3 / 4, line + line / 3),
        Qt::AlignLeft | Qt::AlignVCenter,
        QFontMetrics(painter.font())
            .elidedText(platform::OneLineName::of(header.folderName), Qt::ElideMiddle, band.width() * 3 / 4));
    painter.setFont(fontOfHeight(line * 2 / 3));
    painter.drawText(QRect(band.left(), band.top(), band.width(), line + line / 3),
                     Qt::AlignRight | Qt::AlignVCenter,
                     QStringLiteral("第 %1 / %2 页").arg(pageNumber).arg(pageCount));
    painter.setPen(kMuted);
    QStringList details;
    for (const QString& part : {header.dateRange, header.counts})
        if (!part.isEmpty())
            details << part;
    painter.drawText(QRect(band.left(), band.top() + line + line / 2, band.width(), line),
                     Qt::AlignLeft | Qt::AlignVCenter, details.join(QStringLiteral("   ·   ")));
    painter.setPen(QPen(kFrame, 3));
    painter.drawLine(band.bottomLeft(), band.bottomRight());
}

void paintThumbnail(QPainter& painter, const QRect& square, const QImage& thumbnail)
{
    painter.fillRect(square, QColor(244, 244, 244));
    if (thumbnail.isNull()) {
        painter.setPen(kMuted);
        painter.setFont(fontOfHeight(square.height() / 12));
        painter.drawText(square, Qt::AlignCenter, QStringLiteral("无法解码"));
        return;
    }
    const QSize fitted = thumbnail.size().scaled(square.size(), Qt::KeepAspectRatio);
    const QRect target(square.left() + (square.width() - fitted.width()) / 2,
                       square.top() + (square.height() - fitted.height()) / 2, fitted.width(),
                       fitted.height());
    painter.drawImage(target, thumbnail);
}

// Second caption line: stars (hollow up to five), pick or reject, then the colour dots.
void paintMarks(QPainter& painter, const QRect& row, const BoardPicture& picture)
{
    const double radius = row.height() * 0.38;
    double x = row.left() + radius;
    const double y = row.center().y() + 0.5;
    painter.setRenderHint(QPainter::Antialiasing);
    if (picture.flag == platform::PickFlag::rejected) {
        painter.setPen(QColor(190, 40, 40));
        painter.setFont(fontOfHeight(int(row.height() * 0.8), true));
        painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("✕ 弃用"));
        x += painter.fontMetrics().horizontalAdvance(QStringLiteral("✕ 弃用")) + radius;
    } else {
        for (int i = 0; i < 5; ++i, x += radius * 2.2) {
            const QPainterPath star = starPath(QPointF(x, y), radius);
            painter.setPen(QPen(kMuted, 2));
            painter.setBrush(i < picture.stars ? QColor(40, 40, 40) : Qt::transparent);
            painter.drawPath(star);
        }
        if (picture.flag == platform::PickFlag::picked) {
            painter.setPen(QColor(30, 140, 60));
            painter.setFont(fontOfHeight(int(row.height() * 0.8), true));
            painter.drawText(QRectF(x, row.top(), row.right() - x, row.height()),
                             Qt::AlignLeft | Qt::AlignVCenter, QStringLiteral("✓ 选用"));
            x += painter.fontMetrics().horizontalAdvance(QStringLiteral("✓ 选用")) + radius * 2;
        }
    }
    for (const QString& colour : picture.colours) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(colourOf(colour));
        painter.drawEllipse(QPointF(x + radius, y), radius, radius);
        x += radius * 2.4;
    }
    painter.setBrush(Qt::NoBrush);
}

void paintCell(QPainter& painter, const BoardSheetLayout& layout, const QRect& cell, const BoardCell& item)
{
    paintThumbnail(painter, layout.thumbnailIn(cell), item.thumbnail);
    const QRect caption = layout.captionIn(cell);
    const int line = layout.captionLineHeight();
    painter.setPen(kInk);
    painter.setFont(fontOfHeight(line * 3 / 4));
    painter.drawText(QRect(caption.left(), caption.top(), caption.width(), line),
                     Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(platform::OneLineName::of(item.picture.fileName),
                                                      Qt::ElideMiddle, caption.width()));
    paintMarks(painter, QRect(caption.left(), caption.top() + line, caption.width(), line), item.picture);
    if (!item.picture.mark.isEmpty()) {
        painter.setPen(kMuted);
        painter.setFont(fontOfHeight(line * 2 / 3));
        painter.drawText(
            QRect(caption.left(), caption.top() + 2 * line, caption.width(), line),
            Qt::AlignLeft | Qt::AlignVCenter,
            painter.fontMetrics().elidedText(item.picture.mark, Qt::ElideRight, caption.width()));
    }
}

} // namespace

void BoardSheetPainter::paintPage(QPainter& painter, const BoardSheetLayout& layout,
                                  const BoardHeader& header, const QList<BoardCell>& cells, int pageNumber,
                                  int pageCount)
{
    paintHeader(painter, layout.header(), header, pageNumber, pageCount);
    for (qsizetype i = 0; i < cells.size() && i < layout.perPage(); ++i)
        paintCell(painter, layout, layout.cell(int(i)), cells[i]);
}

} // namespace lumaro::vision
