// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/BoardSheetLayout.h"

#include <algorithm>
#include <cmath>

namespace lumaro::vision {

namespace {

int pixelsOf(double millimetres)
{
    return int(std::lround(millimetres / 25.4 * BoardSheetLayout::kDpi));
}

constexpr double kMarginMm = 10;
constexpr double kHeaderMm = 22;
constexpr double kGutterMm = 3;
// A caption line stays readable on paper (about 7 pt) however many columns there are.
constexpr double kCaptionLineMm = 3.4;
constexpr int kCaptionLines = 3;

} // namespace

BoardSheetLayout::BoardSheetLayout(PaperSize paper, int columns)
    : m_paper(paper), m_page(paper == PaperSize::a4 ? QSize(pixelsOf(210), pixelsOf(297))
                                                    : QSize(pixelsOf(215.9), pixelsOf(279.4))),
      m_columns(std::clamp(columns, kMinColumns, kMaxColumns)), m_rows(1)
{
    const int margin = pixelsOf(kMarginMm);
    m_frame = QRect(margin, margin, m_page.width() - 2 * margin, m_page.height() - 2 * margin);
    const int gutter = pixelsOf(kGutterMm);
    const int width = (m_frame.width() - (m_columns - 1) * gutter) / m_columns;
    m_cell = QSize(width, width + kCaptionLines * captionLineHeight() + gutter / 2);
    const int gridHeight = m_frame.height() - pixelsOf(kHeaderMm);
    m_rows = std::max(1, (gridHeight + gutter) / (m_cell.height() + gutter));
}

std::optional<PaperSize> BoardSheetLayout::paperNamed(const QString& name)
{
    const QString lower = name.trimmed().toLower();
    if (lower == QLatin1String("a4"))
        return PaperSize::a4;
    if (lower == QLatin1String("letter"))
        return PaperSize::letter;
    return std::nullopt;
}

QString BoardSheetLayout::paperName(PaperSize paper)
{
    return paper == PaperSize::a4 ? QStringLiteral("a4") : QStringLiteral("letter");
}

int BoardSheetLayout::pageCount(int pictures) const
{
    return std::max(1, (pictures + perPage() - 1) / perPage());
}

int BoardSheetLayout::captionLineHeight() const
{
    return pixelsOf(kCaptionLineMm);
}

QRect BoardSheetLayout::header() const
{
    return QRect(m_frame.topLeft(), QSize(m_frame.width(), pixelsOf(kHeaderMm) - pixelsOf(kGutterMm)));
}

QRect BoardSheetLayout::cell(int indexOnPage) const
{
    const int gutter = pixelsOf(kGutterMm);
    const int row = indexOnPage / m_columns, column = indexOnPage % m_columns;
    return QRect(m_frame.left() + column * (m_cell.width() + gutter),
                 m_frame.top() + pixelsOf(kHeaderMm) + row * (m_cell.height() + gutter), m_cell.width(),
                 m_cell.height());
}

QRect BoardSheetLayout::thumbnailIn(const QRect& cell) const
{
    return QRect(cell.topLeft(), QSize(cell.width(), cell.width()));
}

QRect BoardSheetLayout::captionIn(const QRect& cell) const
{
    return QRect(cell.left(), cell.top() + cell.width(), cell.width(), kCaptionLines * captionLineHeight());
}

} // namespace lumaro::vision
