// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using lumaro::testing::runCli;
using lumaro::testing::TempFolder;

namespace {

TEST(IndexCommand, WritesBothFilesAndSaysWhichPicturesFailed)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("good one.jpg"), {320, 240});
    const QByteArray whole = folder.read(QStringLiteral("good one.jpg"));
    folder.write(QStringLiteral("cut.jpg"), whole.left(whole.size() / 2));
    const auto result = runCli({QStringLiteral("index"), folder.path(), QStringLiteral("--jobs"), QStringLiteral("2")});
    EXPECT_EQ(result.exitCode, 1) << result.errText().toStdString();
    const QStringList lines = result.outText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3) << result.outText().toStdString();
    EXPECT_TRUE(QFileInfo(lines[0]).fileName().startsWith(QStringLiteral("vision_index_")));
    EXPECT_TRUE(QFileInfo::exists(lines[0]));
    EXPECT_TRUE(QFileInfo(lines[1]).fileName().startsWith(QStringLiteral("vision_summary_")));
    EXPECT_TRUE(lines[2].startsWith(QStringLiteral("1 pictures: ")));
    EXPECT_TRUE(lines[2].endsWith(QStringLiteral("(1 failed)")));
    EXPECT_TRUE(result.errText().contains(QStringLiteral("VISION_INDEX - 识别失败: cut.jpg")));
    EXPECT_EQ(folder.read(QStringLiteral("cut.jpg")), whole.left(whole.size() / 2));

    // Quiet hides the log lines, never which picture failed and why.
    const auto quiet = runCli({QStringLiteral("index"), QStringLiteral("-q"), folder.path()});
    EXPECT_EQ(quiet.exitCode, 1);
    EXPECT_FALSE(quiet.errText().contains(QStringLiteral("VISION_INDEX - ")));
    EXPECT_TRUE(quiet.errText().contains(QStringLiteral("lumaro-cli index: cut.jpg: ")))
        << quiet.errText().toStdString();
}

TEST(IndexCommand, BadFoldersAndABlockingIndexFileAreBadInput)
{
    TempFolder folder;
    EXPECT_EQ(runCli({QStringLiteral("index"), folder.filePath(QStringLiteral("missing"))}).exitCode, 2);
    const QString file = folder.write(QStringLiteral("a file"));
    EXPECT_EQ(runCli({QStringLiteral("index"), file}).exitCode, 2);
    EXPECT_EQ(runCli({QStringLiteral("index"), folder.path(), QStringLiteral("--jobs"), QStringLiteral("0")}).exitCode, 2);

    folder.writePicture(QStringLiteral("p.png"));
    folder.write(QStringLiteral("_index"), QByteArrayLiteral("keep"));
    const auto blocked = runCli({QStringLiteral("index"), folder.path()});
    EXPECT_EQ(blocked.exitCode, 2);
    EXPECT_TRUE(blocked.errText().contains(QStringLiteral("VISION_INDEX - _index 路径存在但不是目录")));
    EXPECT_EQ(folder.read(QStringLiteral("_index")), QByteArrayLiteral("keep"));
}

} // namespace
