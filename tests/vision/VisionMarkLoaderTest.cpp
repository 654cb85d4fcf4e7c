// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionMarkLoader.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"
#include "tests/vision/VisionIndexFixture.h"

#include <gtest/gtest.h>

using namespace lumaro::vision;
using namespace lumaro::testing;

namespace {
const QString kTag = QStringLiteral("EDIT1_NAMEWORK");
}

TEST(VisionMarkLoader, AFolderWithoutIndexFilesHasNoMarks)
{
    TempFolder folder;
    EXPECT_FALSE(VisionMarkLoader::load(folder.path(), kTag));
    folder.makeFolder(QStringLiteral("_index"));
    folder.write(QStringLiteral("_index/vision_summary_0101120000_x.json"), "{}");
    EXPECT_FALSE(VisionMarkLoader::load(folder.path(), kTag));
}

TEST(VisionMarkLoader, TheNewestRunWinsByItsGeneratedTimeNotItsFileName)
{
    TempFolder folder;
    // The stamp in the name says otherwise (the year turned between the runs): the time inside decides.
    writeVisionIndex(folder, QStringLiteral("vision_index_0101090000_a.json"), QStringLiteral("2025-01-01T09:00:00Z"),
                     {{QStringLiteral("a.jpg"), QStringLiteral("MARK_PEOPLE")}});
    writeVisionIndex(folder, QStringLiteral("vision_index_1231230000_a.json"), QStringLiteral("2024-12-31T23:00:00Z"),
                     {{QStringLiteral("a.jpg"), QStringLiteral("MARK_OUTDOOR")},
                      {QStringLiteral("b.jpg"), QStringLiteral("MARK_TOOLS")}});
    const auto marks = VisionMarkLoader::load(folder.path(), kTag);
    ASSERT_TRUE(marks);
    EXPECT_EQ(marks->markByFileName.value(QStringLiteral("a.jpg")), QStringLiteral("MARK_PEOPLE"));
    EXPECT_EQ(marks->markByFileName.value(QStringLiteral("b.jpg")), QStringLiteral("MARK_TOOLS"));
    EXPECT_EQ(marks->resultCount, 3);
}

TEST(VisionMarkLoader, RunsWithoutATimeAreOlderAndOrderedByName)
{
    TempFolder folder;
    writeVisionIndex(folder, QStringLiteral("vision_index_0301000000_a.json"), {},
                     {{QStringLiteral("a.jpg"), QStringLiteral("MARK_DOCUMENTS")}});
    writeVisionIndex(folder, QStringLiteral("vision_index_0201000000_a.json"), QStringLiteral("not a date"),
                     {{QStringLiteral("a.jpg"), QStringLiteral("MARK_OUTDOOR")},
                      {QStringLiteral("b.jpg"), QStringLiteral("MARK_OUTDOOR")}});
    writeVisionIndex(folder, QStringLiteral("vision_index_0101000000_a.json"), QStringLiteral("2024-01-01T00:00:00.123Z"),
                     {{QStringLiteral("b.jpg"), QStringLiteral("MARK_PEOPLE")}});
    const auto marks = VisionMarkLoader::load(folder.path(), kTag);
    ASSERT_TRUE(marks);
    EXPECT_EQ(marks->markByFileName.value(QStringLiteral("a.jpg")), QStringLiteral("MARK_DOCUMENTS"));
    EXPECT_EQ(marks->markByFileName.value(QStringLiteral("b.jpg")), QStringLiteral("MARK_PEOPLE"));
}

TEST(VisionMarkLoader, MalformedFilesAreLoggedAndSkipped)
{
    TempFolder folder;
    const QString broken = folder.write(QStringLiteral("_index/vision_index_0201000000_a.json"), "{\"results\": [");
    const QString array = folder.write(QStringLiteral("_index/vision_index_0202000000_a.json"), "[1, 2]");
    writeVisionIndex(folder, QStringLiteral("vision_index_0101000000_a.json"), QStringLiteral("2024-01-01T00:00:00Z"),
                     {{QStringLiteral("a.jpg"), QStringLiteral("MARK_OUTDOOR")}});
    LogCapture log;
    const auto marks = VisionMarkLoader::load(folder.path(), kTag);
    ASSERT_TRUE(marks);
    EXPECT_EQ(marks->markByFileName.size(), 1);
    EXPECT_EQ(marks->indexFiles.size(), 1);
    EXPECT_EQ(log.countStartingWith(kTag + QStringLiteral(" - Vision 索引文件格式错误，已跳过: ") + broken), 1);
    EXPECT_EQ(log.countStartingWith(kTag + QStringLiteral(" - Vision 索引文件格式错误，已跳过: ") + array), 1);

    QFile::remove(folder.filePath(QStringLiteral("_index/vision_index_0101000000_a.json")));
    EXPECT_FALSE(VisionMarkLoader::load(folder.path(), kTag));
}

TEST(VisionMarkLoader, NamesThatAreNotPlainNamesAreIgnored)
{
    TempFolder folder;
    writeVisionIndex(folder, QStringLiteral("vision_index_0101000000_a.json"), QStringLiteral("2024-01-01T00:00:00Z"),
                     {{QStringLiteral("../a.jpg"), QStringLiteral("MARK_PEOPLE")},
                      {QStringLiteral("sub/b.jpg"), QStringLiteral("MARK_PEOPLE")},
                      {QStringLiteral("."), QStringLiteral("MARK_PEOPLE")},
                      {QStringLiteral(".."), QStringLiteral("MARK_PEOPLE")},
                      {QStringLiteral("照片 1.jpg"), QStringLiteral("MARK_PEOPLE")}});
    LogCapture log;
    const auto marks = VisionMarkLoader::load(folder.path(), kTag);
    ASSERT_TRUE(marks);
    EXPECT_EQ(marks->markByFileName.keys(), QStringList{QStringLiteral("照片 1.jpg")});
    EXPECT_EQ(log.countStartingWith(kTag + QStringLiteral(" - 忽略索引中的非法文件名: ")), 4);
}

TEST(VisionMarkLoader, ANewerRunWithoutAMarkLeavesTheFileWithoutOne)
{
    TempFolder folder;
    writeVisionIndex(folder, QStringLiteral("vision_index_0101000000_a.json"), QStringLiteral("2024-01-01T00:00:00Z"),
                     {{QStringLiteral("a.jpg"), QStringLiteral("MARK_PEOPLE")}});
    writeVisionIndex(folder, QStringLiteral("vision_index_0102000000_a.json"), QStringLiteral("2024-01-02T00:00:00Z"),
                     {{QStringLiteral("a.jpg"), QString()}});
    const auto marks = VisionMarkLoader::load(folder.path(), kTag);
    ASSERT_TRUE(marks);
    EXPECT_FALSE(marks->markByFileName.contains(QStringLiteral("a.jpg")));
}
