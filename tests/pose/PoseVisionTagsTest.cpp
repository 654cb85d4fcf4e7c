// SPDX-License-Identifier: GPL-3.0-or-later
// A picture's vision tags come from the newest index file that knows it; broken files are skipped.
#include "pose/PoseVisionTags.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

QByteArray indexWith(const QByteArray& results)
{
    return QByteArrayLiteral(R"({"totalObjects":1,"results":[)") + results + QByteArrayLiteral("]}");
}

TEST(PoseVisionTags, NoIndexMeansNoTags)
{
    testing::TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("a.jpg"));
    EXPECT_FALSE(PoseVisionTags::forPicture(picture).has_value());
}

TEST(PoseVisionTags, TakesObjectsAndScenesOfTheMatchingEntryWithoutRepeats)
{
    testing::TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("my photo.jpg"));
    folder.write(QStringLiteral("_index/vision_index_20240101_x.json"),
                 indexWith(R"({"fileName":"other.jpg","objects":["dog"],"scene":["dog"]},)"
                           R"({"fileName":"my photo.jpg","objects":["book","desk"],"scene":["book","desk","lamp"]})"));
    EXPECT_EQ(PoseVisionTags::forPicture(picture), (QStringList{"book", "desk", "lamp"}));
}

TEST(PoseVisionTags, NewestFileWinsAndBrokenFilesAreSkipped)
{
    testing::TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("a.jpg"));
    folder.write(QStringLiteral("_index/vision_index_20240101_x.json"),
                 indexWith(R"({"fileName":"a.jpg","objects":["old"],"scene":[]})"));
    folder.write(QStringLiteral("_index/vision_index_20240202_x.json"),
                 indexWith(R"({"fileName":"a.jpg","objects":["new"],"scene":[]})"));
    folder.write(QStringLiteral("_index/vision_index_20240303_x.json"), QByteArrayLiteral("{not json"));
    testing::LogCapture log;
    EXPECT_EQ(PoseVisionTags::forPicture(picture), (QStringList{"new"}));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("POSE - ⚠️ 索引文件格式错误: ")), 1);
}

TEST(PoseVisionTags, AnIndexWithoutThePictureGivesNone)
{
    testing::TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("a.jpg"));
    folder.write(QStringLiteral("_index/vision_index_1.json"),
                 indexWith(R"({"fileName":"b.jpg","objects":["book"],"scene":[]})"));
    EXPECT_FALSE(PoseVisionTags::forPicture(picture).has_value());
}

} // namespace
} // namespace lumaro::pose
