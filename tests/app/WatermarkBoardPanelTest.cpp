// SPDX-License-Identifier: GPL-3.0-or-later
// The watermark and board sheet panels over real folders: the work runs off the main thread, the panel shows
// what came of it, and what the module refuses is said in the panel.
#include "app/BoardSheetPanel.h"
#include "app/WatermarkPanel.h"
#include "tests/app/FakeToolHost.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using testing::FakeToolHost;
using testing::TempFolder;
using testing::waitUntil;

QPushButton* button(QWidget& panel, const QString& text)
{
    for (QPushButton* candidate : panel.findChildren<QPushButton*>())
        if (candidate->text() == text)
            return candidate;
    return nullptr;
}

bool says(QWidget& panel, const QString& text)
{
    for (QLabel* label : panel.findChildren<QLabel*>())
        if (label->text().contains(text))
            return true;
    return false;
}

void open(FakeToolHost& host, const TempFolder& folder, const QStringList& names)
{
    host.modeState().setFolderPath(folder.path(), folder.path(), folder.path());
    host.modeState().setImageFiles(names);
}

TEST(WatermarkPanel, WithoutAVisionIndexItSaysHowToGetOneAndWritesNothing)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("a.jpg"));
    FakeToolHost host;
    open(host, folder, {QStringLiteral("a.jpg")});
    WatermarkPanel panel(host);
    button(panel, QStringLiteral("读取水印标识"))->click();
    ASSERT_TRUE(waitUntil([&] { return says(panel, QStringLiteral("没有 Vision 索引")); }));
    EXPECT_FALSE(folder.exists(QStringLiteral("_index")));
    EXPECT_FALSE(button(panel, QStringLiteral("按标识分拣"))->isEnabled());
    EXPECT_FALSE(button(panel, QStringLiteral("撤销上次分拣"))->isEnabled());
}

TEST(BoardSheetPanel, MakesTheSheetsOfTheShownFolder)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("a.jpg"));
    folder.writePicture(QStringLiteral("b.png"));
    FakeToolHost host;
    open(host, folder, {QStringLiteral("a.jpg"), QStringLiteral("b.png")});
    BoardSheetPanel panel(host);
    button(panel, QStringLiteral("生成索引表"))->click();
    ASSERT_TRUE(waitUntil([&] { return says(panel, QStringLiteral("✅ 2 张图片，1 页")); }, 30000));
    const QStringList written = QDir(folder.filePath(QStringLiteral("_index"))).entryList(QDir::Files);
    EXPECT_EQ(written.filter(QStringLiteral(".jpg")).size(), 1);
    EXPECT_EQ(written.filter(QStringLiteral(".pdf")).size(), 1);
}

} // namespace
} // namespace lumaro::app
