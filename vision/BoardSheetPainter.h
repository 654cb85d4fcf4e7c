// SPDX-License-Identifier: GPL-3.0-or-later
// Paints one page of a board index sheet: the header band, then each picture's thumbnail and caption.
#pragma once

#include "vision/BoardPicture.h"
#include "vision/BoardSheetLayout.h"

#include <QImage>
#include <QList>
#include <QString>

class QPainter;

namespace lumaro::vision {

// The header every page repeats.
struct BoardHeader
{
    QString folderName;
    QString dateRange; // "2024-05-01 – 2024-05-03", one day alone, or empty when no date is known
    QString counts;    // "128 张 · 12 张评了星 · 5 张选用 · …"
};

struct BoardCell
{
    BoardPicture picture;
    QImage thumbnail; // null when the picture could not be decoded: the cell says so
};

// Pure painting; any thread (QPainter on a QImage or a QPdfWriter). The painter's device is the page in
// pixels at BoardSheetLayout::kDpi.
class BoardSheetPainter
{
public:
    static void paintPage(QPainter& painter, const BoardSheetLayout& layout, const BoardHeader& header,
                          const QList<BoardCell>& cells, int pageNumber, int pageCount);
};

} // namespace lumaro::vision
