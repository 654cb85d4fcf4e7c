// SPDX-License-Identifier: GPL-3.0-or-later
// Where everything goes on a page of a board index sheet (a contact sheet), in pixels at print resolution.
#pragma once

#include <QRect>
#include <QSize>
#include <QString>

#include <optional>

namespace lumaro::vision {

enum class PaperSize
{
    a4,
    letter
};

// Pure value; any thread. Every page has the header band on top (folder name, dates, counts) and a grid of
// equal cells below, filled row by row; a cell is a square thumbnail over a caption of three lines (name;
// stars, pick and colours; category mark). The printable frame keeps 10 mm from every edge.
class BoardSheetLayout
{
public:
    BoardSheetLayout(PaperSize paper, int columns);

    static constexpr int kDpi = 300;
    static constexpr int kMinColumns = 2;
    static constexpr int kMaxColumns = 10;
    static constexpr int kDefaultColumns = 5;

    static std::optional<PaperSize> paperNamed(const QString& name); // "a4", "letter" (any case)
    static QString paperName(PaperSize paper);

    PaperSize paper() const { return m_paper; }
    QSize pageSize() const { return m_page; }
    int columns() const { return m_columns; }
    int rows() const { return m_rows; }
    int perPage() const { return m_columns * m_rows; }
    int pageCount(int pictures) const;

    QRect header() const;
    QRect cell(int indexOnPage) const;
    QRect thumbnailIn(const QRect& cell) const;
    QRect captionIn(const QRect& cell) const;
    int captionLineHeight() const;

private:
    PaperSize m_paper;
    QSize m_page;
    int m_columns;
    int m_rows;
    QRect m_frame;
    QSize m_cell;
};

} // namespace lumaro::vision
