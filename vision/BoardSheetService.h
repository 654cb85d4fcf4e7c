// SPDX-License-Identifier: GPL-3.0-or-later
// Board index sheets: contact sheets of a folder's pictures, written into its `_index` folder as JPEG pages
// and, when asked, one PDF.
#pragma once

#include "vision/BoardSheetLayout.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>

namespace lumaro::platform {
class FileTagStore;
}

namespace lumaro::vision {

struct BoardSheetOptions
{
    int columns = BoardSheetLayout::kDefaultColumns;
    PaperSize paper = PaperSize::a4;
    bool pdf = false;
    std::function<void(int done, int total)> progress; // pictures placed so far
    const std::atomic<bool>* cancel = nullptr;         // checked before each picture
};

struct BoardSheetResult
{
    QStringList pagePaths;  // `_index/board_<stamp>_<key>_p01.jpg`, …
    QString pdfPath;        // `_index/board_<stamp>_<key>.pdf`; empty unless asked for and written
    int pictures = 0;       // pictures placed on the sheets
    int undecodable = 0;    // placed with a "无法解码" cell
    bool cancelled = false; // nothing is left behind
    bool indexFolderRefused = false;
    QString error; // a page or the PDF could not be written; nothing is left behind
};

// Blocking (off the main thread in the app); any thread. Logs under "BOARD_INDEX". The pictures are placed
// in the order given (the folder's browsing order), each exactly once; the header of every page names the
// folder, the dates the pictures were taken (camera clock, else file time) and the counts of pictures,
// stars, picks, rejects and colour tags. A page is painted once and goes both to its JPEG and to the PDF, so
// only one page of thumbnails is ever held. Files are written under names no file has yet (a second run in
// the same second gets "_2"), each through a temporary file; a failed or cancelled run removes what it wrote.
class BoardSheetService
{
public:
    explicit BoardSheetService(platform::FileTagStore* tags = nullptr);

    BoardSheetResult run(const QString& folder, const QStringList& fileNames,
                         const BoardSheetOptions& options = {}) const;

    static constexpr const char* kTag = "BOARD_INDEX";
    static constexpr int kJpegQuality = 88;

private:
    platform::FileTagStore& m_tags;
};

} // namespace lumaro::vision
