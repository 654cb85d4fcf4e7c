// SPDX-License-Identifier: GPL-3.0-or-later
// The pose index of a folder run: a new file per run beside the others, never in place of one, and a file
// that is not a pose index named with its reason instead of being half read.
#include "pose/PoseIndexFile.h"

#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

using testing::TempFolder;

PicturePoseAnalysis pictureWithOnePerson(const QString& path)
{
    PicturePoseAnalysis analysis;
    analysis.path = path;
    analysis.pixelSize = QSize(640, 480);
    AnalysedPerson person;
    person.box = QRectF(0.4, 0.1, 0.2, 0.8);
    person.score = 0.6f;
    person.shotSize = ShotSize::full;
    analysis.people.push_back(person);
    analysis.shotSize = ShotSize::full;
    return analysis;
}

TEST(PoseIndexFile, RunsInTheSameSecondEachKeepTheirOwnFile)
{
    TempFolder folder;
    const std::vector<PicturePoseAnalysis> run{
        pictureWithOnePerson(folder.filePath(QStringLiteral("a.jpg")))};
    const QDateTime startedAt = QDateTime::currentDateTime();
    const auto first = PoseIndexFile::write(folder.path(), run, startedAt);
    const auto second = PoseIndexFile::write(folder.path(), {}, startedAt);
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    const auto kept = PoseIndexFile::read(*first);
    ASSERT_TRUE(kept);
    ASSERT_EQ(kept->pictures.size(), 1u);
    EXPECT_EQ(kept->pictures[0].fileName, QStringLiteral("a.jpg"));
    EXPECT_EQ(kept->pictures[0].shotSizes, QStringList{QStringLiteral("full")});
    EXPECT_EQ(PoseIndexFile::filesNewestFirst(folder.path()).size(), 2);
    EXPECT_TRUE(QFileInfo(*first).fileName().startsWith(QStringLiteral("pose_index_")));
    EXPECT_TRUE(
        QDir(folder.filePath(QStringLiteral("_index"))).entryList({QStringLiteral("*.tmp*")}).isEmpty());
}

struct BrokenCase
{
    const char* label;
    QByteArray content;
    const char* reason;
};

class BrokenPoseIndex : public ::testing::TestWithParam<BrokenCase>
{
};

TEST_P(BrokenPoseIndex, IsNamedWithItsReason)
{
    TempFolder folder;
    const QString path =
        folder.write(QStringLiteral("_index/pose_index_0101000000_x.json"), GetParam().content);
    QString error;
    EXPECT_FALSE(PoseIndexFile::read(path, &error));
    EXPECT_TRUE(error.contains(path)) << error.toStdString();
    EXPECT_TRUE(error.contains(QString::fromLatin1(GetParam().reason))) << error.toStdString();
}

const BrokenCase kBrokenFiles[] = {
    {"cutShort", QByteArray(R"({"results": [{"fileName": "a.jp)"), "not a pose index"},
    {"notAnObject", QByteArray("[1, 2]"), "no \"results\" list"},
    {"visionIndexLayout", QByteArray(R"({"results": {}})"), "no \"results\" list"},
};

INSTANTIATE_TEST_SUITE_P(Files, BrokenPoseIndex, ::testing::ValuesIn(kBrokenFiles),
                         [](const auto& info) { return std::string(info.param.label); });

TEST(PoseIndexFile, NamesThatWouldLeaveTheFolderAreNotTrusted)
{
    TempFolder folder;
    const QString path = folder.write(
        QStringLiteral("_index/pose_index_0101000000_x.json"),
        QByteArray(R"({"results": [{"fileName": "../x.jpg"}, {"fileName": ".."}, {"fileName": "ok.jpg"}]})"));
    const auto data = PoseIndexFile::read(path);
    ASSERT_TRUE(data);
    ASSERT_EQ(data->pictures.size(), 1u);
    EXPECT_EQ(data->pictures[0].fileName, QStringLiteral("ok.jpg"));
}

} // namespace
} // namespace lumaro::pose
