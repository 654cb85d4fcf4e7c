// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PoseTileExporter.h"

#include "pose/SkeletonPainter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace lumaro::pose {

namespace {

constexpr int kCaptionHeight = 52;
constexpr int kSheetLabelHeight = 36;
// A standing person's tile is tall and narrow: it is never narrower than this, so its caption can be read.
constexpr int kLeastTileWidth = 420;
constexpr int kJpegQuality = 90;

// The person's box with its margin, in the picture's pixels, inside the picture.
QRect cropFor(const QImage& picture, const AnalysedPerson& person)
{
    const double width = picture.width();
    const double height = picture.height();
    const QRectF box(person.box.x() * width, (1.0 - person.box.bottom()) * height, person.box.width() * width,
                     person.box.height() * height);
    const double margin = PoseTileExporter::kMargin * std::max(box.height(), box.width());
    return box.adjusted(-margin, -margin, margin, margin).toAlignedRect() & picture.rect();
}

// Each line on its own row, cut with an ellipsis where the band ends.
void drawLines(QPainter& painter, const QRect& band, const QStringList& lines, int pixelSize)
{
    QFont font = painter.font();
    font.setPixelSize(pixelSize);
    painter.setFont(font);
    painter.setPen(Qt::white);
    const int rowHeight = band.height() / int(std::max<qsizetype>(1, lines.size()));
    for (int i = 0; i < int(lines.size()); ++i) {
        const QRect row(band.left() + 6, band.top() + i * rowHeight, band.width() - 12, rowHeight);
        painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(lines[i], Qt::ElideRight, row.width()));
    }
}

} // namespace

PoseTileExporter::PoseTileExporter(QString folder) : m_folder(std::move(folder)) {}

QString PoseTileExporter::caption(const AnalysedPerson& person, int number)
{
    QString text = QStringLiteral("#%1 %2 · %3")
                       .arg(number)
                       .arg(person.pose.verdict(), ruleDefinition(person.pose.action).displayName);
    if (person.shotSize)
        text += QStringLiteral(" · ") + displayName(*person.shotSize);
    return text;
}

QImage PoseTileExporter::renderTile(const QImage& picture, const AnalysedPerson& person, int number)
{
    const QRect crop = cropFor(picture, person);
    if (crop.isEmpty())
        return {};
    const double scale =
        std::min(kMostEnlargement, double(kTileSide) / std::max(crop.width(), crop.height()));
    const QSize shown(std::max(1, int(std::lround(crop.width() * scale))),
                      std::max(1, int(std::lround(crop.height() * scale))));
    const int width = std::max(shown.width(), kLeastTileWidth);
    const int left = (width - shown.width()) / 2;
    QImage tile(width, shown.height() + kCaptionHeight, QImage::Format_RGB32);
    tile.fill(QColor(24, 24, 24));
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(QPoint(left, 0), shown), picture, crop);
    // The whole picture, as it lies under the tile: the joints are normalised to it.
    const QRectF whole(left - crop.x() * scale, -crop.y() * scale, picture.width() * scale,
                       picture.height() * scale);
    SkeletonPainter::paint(painter, person.pose, whole, SkeletonPainter::colourFor(std::size_t(number - 1)),
                           std::max(1.0, shown.height() / 320.0));
    drawLines(painter, QRect(0, shown.height(), width, kCaptionHeight),
              {caption(person, number), ruleDefinition(person.pose.action).summary}, 17);
    return tile;
}

std::optional<QString> PoseTileExporter::writeNew(const QImage& image, const QString& folder,
                                                  const QString& fileName, QString* error)
{
    const QString stem = QFileInfo(fileName).completeBaseName();
    const QString suffix = QFileInfo(fileName).suffix();
    for (int n = 1; n < 10000; ++n) {
        const QString name = n == 1 ? fileName : QStringLiteral("%1_%2.%3").arg(stem).arg(n).arg(suffix);
        QFile file(QDir(folder).filePath(name));
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            if (file.exists())
                continue; // taken: never replaced
            if (error)
                *error = file.errorString();
            return std::nullopt;
        }
        QImageWriter writer(&file, "jpg");
        writer.setQuality(kJpegQuality);
        if (writer.write(image))
            return file.fileName();
        if (error)
            *error = writer.errorString();
        file.remove(); // only what this call created
        return std::nullopt;
    }
    if (error)
        *error = QStringLiteral("every name is taken");
    return std::nullopt;
}

int PoseTileExporter::addPicture(const QImage& picture, const PicturePoseAnalysis& analysis)
{
    const QString stem = QFileInfo(analysis.path).completeBaseName();
    int count = 0;
    for (std::size_t i = 0; i < analysis.people.size(); ++i) {
        const int number = int(i) + 1;
        const QImage tile = renderTile(picture, analysis.people[i], number);
        const QString name = QStringLiteral("%1_person%2.jpg").arg(stem).arg(number);
        QString error;
        const auto path = tile.isNull() ? std::nullopt : writeNew(tile, m_folder, name, &error);
        if (!path) {
            m_failures << name + QStringLiteral(": ") +
                              (tile.isNull() ? QStringLiteral("empty person box") : error);
            continue;
        }
        m_written << *path;
        m_sheet.emplace_back(
            tile.scaled(kSheetCell, kSheetCell, Qt::KeepAspectRatio, Qt::SmoothTransformation),
            QFileInfo(analysis.path).fileName() + QStringLiteral("\n") + caption(analysis.people[i], number));
        ++count;
    }
    return count;
}

std::optional<QString> PoseTileExporter::writeContactSheet()
{
    if (m_sheet.empty())
        return std::nullopt;
    const int columns = std::min<int>(kSheetColumns, int(m_sheet.size()));
    const int rows = (int(m_sheet.size()) + columns - 1) / columns;
    const int cellHeight = kSheetCell + kSheetLabelHeight;
    QImage sheet(columns * kSheetCell, rows * cellHeight, QImage::Format_RGB32);
    sheet.fill(QColor(40, 40, 40));
    {
        QPainter painter(&sheet);
        for (std::size_t i = 0; i < m_sheet.size(); ++i) {
            const QPoint cell(int(i) % columns * kSheetCell, int(i) / columns * cellHeight);
            const QImage& tile = m_sheet[i].first;
            painter.drawImage(
                cell + QPoint((kSheetCell - tile.width()) / 2, (kSheetCell - tile.height()) / 2), tile);
            drawLines(painter, QRect(cell + QPoint(0, kSheetCell), QSize(kSheetCell, kSheetLabelHeight)),
                      m_sheet[i].second.split(u'\n'), 12);
        }
    }
    QString error;
    const auto path = writeNew(sheet, m_folder, QStringLiteral("pose_contact_sheet.jpg"), &error);
    if (!path) {
        m_failures << QStringLiteral("pose_contact_sheet.jpg: ") + error;
        return std::nullopt;
    }
    m_written << *path;
    return path;
}

} // namespace lumaro::pose
