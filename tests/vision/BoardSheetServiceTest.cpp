// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/BoardSheetService.h"

#include "platform/metadata/XmpSidecar.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace lumaro::vision;
using lumaro::testing::TempFolder;

namespace {

// The text of a PDF as poppler reads it (layout kept, so each caption stays on its own line).
QString pdfText(const QString& pdf)
{
    QProcess process;
    process.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), pdf, QStringLiteral("-")});
    if (!process.waitForFinished(60000) || process.exitCode() != 0)
        return {};
    return QString::fromUtf8(process.readAllStandardOutput());
}

QStringList indexEntries(const TempFolder& folder)
{
    return QDir(folder.filePath(QStringLiteral("_index"))).entryList(QDir::Files | QDir::Hidden);
}

} // namespace

TEST(BoardSheetLayout, PagesAreA4OrLetterAt300DpiAndCellsStayOnThePageApart)
{
    for (const PaperSize paper : {PaperSize::a4, PaperSize::letter}) {
        for (const int columns : {1, 2, 5, 10, 40}) {
            const BoardSheetLayout layout(paper, columns);
            EXPECT_EQ(layout.pageSize(), paper == PaperSize::a4 ? QSize(2480, 3508) : QSize(2550, 3300));
            EXPECT_EQ(layout.columns(), std::clamp(columns, 2, 10));
            const QRect page(QPoint(), layout.pageSize());
            for (int i = 0; i < layout.perPage(); ++i) {
                const QRect cell = layout.cell(i);
                EXPECT_TRUE(page.contains(cell)) << columns << " " << i;
                EXPECT_FALSE(cell.intersects(layout.header()));
                if (i > 0)
                    EXPECT_FALSE(cell.intersects(layout.cell(i - 1)));
            }
            EXPECT_EQ(layout.pageCount(0), 1);
            EXPECT_EQ(layout.pageCount(layout.perPage()), 1);
            EXPECT_EQ(layout.pageCount(layout.perPage() + 1), 2);
        }
    }
}

TEST(BoardSheetService, EveryPictureIsOnTheSheetsOnceWithItsMarks)
{
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty() ||
        QStandardPaths::findExecutable(QStringLiteral("pdftoppm")).isEmpty())
        GTEST_SKIP() << "poppler-utils is not installed";
    TempFolder folder;
    const BoardSheetLayout layout(PaperSize::a4, 6);
    QStringList names;
    for (int i = 0; i < layout.perPage() + 3; ++i) {
        names << QStringLiteral("shot_%1.jpg").arg(i + 1, 3, 10, QLatin1Char('0'));
        folder.writePicture(names.last(), {300, 200}, QColor::fromHsv((120 + i * 37) % 360, 200, 200));
    }
    folder.write(QStringLiteral("broken.jpg"), "not a picture");
    names << QStringLiteral("broken.jpg");
    using lumaro::platform::PickFlag;
    using lumaro::platform::SidecarNaming;
    ASSERT_TRUE(lumaro::platform::XmpSidecar::writeRating(folder.filePath(names[0]), 4, PickFlag::picked,
                                                          SidecarNaming::pictureName));
    ASSERT_TRUE(lumaro::platform::XmpSidecar::writeColours(folder.filePath(names[1]), {QStringLiteral("red")},
                                                           SidecarNaming::pictureName));

    BoardSheetOptions options;
    options.columns = 6;
    options.pdf = true;
    const BoardSheetResult result = BoardSheetService().run(folder.path(), names, options);
    ASSERT_TRUE(result.error.isEmpty()) << result.error.toStdString();
    EXPECT_EQ(result.pictures, names.size());
    EXPECT_EQ(result.undecodable, 1);
    ASSERT_EQ(result.pagePaths.size(), 2);
    const QImage first(result.pagePaths[0]);
    EXPECT_EQ(first.size(), QSize(2480, 3508));
    // The first cell holds the first picture's colour.
    const QColor centre = first.pixelColor(layout.thumbnailIn(layout.cell(0)).center());
    EXPECT_NEAR(centre.hsvHue(), 120, 8);

    const QString text = pdfText(result.pdfPath);
    ASSERT_FALSE(text.isEmpty());
    for (const QString& name : names)
        EXPECT_EQ(text.count(name), 1) << name.toStdString();
    EXPECT_EQ(text.count(QDir(folder.path()).dirName()), 2) << "the folder's name heads both pages";
    EXPECT_TRUE(text.contains(QStringLiteral("1 张有星级"))) << text.toStdString();

    QProcess render;
    render.start(QStringLiteral("pdftoppm"),
                 {QStringLiteral("-r"), QStringLiteral("20"), QStringLiteral("-png"), result.pdfPath,
                  folder.filePath(QStringLiteral("render"))});
    ASSERT_TRUE(render.waitForFinished(60000));
    EXPECT_EQ(render.exitCode(), 0);
    EXPECT_EQ(folder.entries().filter(QStringLiteral("render-")).size(), 2);
}

TEST(BoardSheetService, ASecondRunNeverReplacesTheFirst)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("a.jpg"));
    const BoardSheetResult first = BoardSheetService().run(folder.path(), {QStringLiteral("a.jpg")});
    const BoardSheetResult second = BoardSheetService().run(folder.path(), {QStringLiteral("a.jpg")});
    ASSERT_EQ(first.pagePaths.size(), 1);
    ASSERT_EQ(second.pagePaths.size(), 1);
    EXPECT_NE(first.pagePaths[0], second.pagePaths[0]);
    EXPECT_EQ(indexEntries(folder).filter(QStringLiteral(".jpg")).size(), 2);
}

TEST(BoardSheetService, ABlockedIndexOrACancelledRunLeavesNothing)
{
    TempFolder blocked;
    blocked.writePicture(QStringLiteral("a.jpg"));
    blocked.write(QStringLiteral("_index"), "a plain file");
    EXPECT_TRUE(BoardSheetService().run(blocked.path(), {QStringLiteral("a.jpg")}).indexFolderRefused);
    EXPECT_EQ(blocked.read(QStringLiteral("_index")), "a plain file");

    TempFolder folder;
    QStringList names;
    for (int i = 0; i < 24; ++i)
        names << folder.writePicture(QStringLiteral("p%1.png").arg(i)).section(QLatin1Char('/'), -1);
    std::atomic<bool> cancel = false;
    BoardSheetOptions options;
    options.columns = 2; // several pages, so a page is written before the cancel comes
    options.pdf = true;
    options.cancel = &cancel;
    options.progress = [&cancel, &names](int done, int) {
        if (done == int(names.size()) + 12)
            cancel = true;
    };
    const BoardSheetResult result = BoardSheetService().run(folder.path(), names, options);
    EXPECT_TRUE(result.cancelled);
    EXPECT_TRUE(result.pagePaths.isEmpty());
    EXPECT_TRUE(indexEntries(folder).isEmpty()) << indexEntries(folder).join(QLatin1Char(' ')).toStdString();
}
