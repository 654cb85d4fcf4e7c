// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/NameGrouper.h"

#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

using namespace lumaro::vision;
using lumaro::testing::LogCapture;

namespace {

struct Walk
{
    const char* what;
    std::vector<std::pair<const char*, const char*>> files; // name, mark (nullptr: no mark)
    std::vector<int> groupSizes;
};

QList<FileInfo> filesOf(const Walk& walk)
{
    QList<FileInfo> files;
    for (const auto& [name, mark] : walk.files)
        files << FileInfo::from(QString::fromUtf8(name),
                                mark ? std::optional(QString::fromUtf8(mark)) : std::nullopt);
    return files;
}

} // namespace

class NameGrouperWalk : public ::testing::TestWithParam<Walk>
{
};

TEST_P(NameGrouperWalk, SplitsWhereSourceOrPeopleTypeChanges)
{
    const QList<GroupResult> groups = NameGrouper::group(filesOf(GetParam()));
    std::vector<int> sizes;
    for (const GroupResult& group : groups)
        sizes.push_back(int(group.files.size()));
    EXPECT_EQ(sizes, GetParam().groupSizes) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, NameGrouperWalk,
    ::testing::Values(
        Walk{"nothing", {}, {}},
        Walk{"one camera run", {{"IMG_0001.jpg", nullptr}, {"IMG_0002.jpg", nullptr}, {"IMG_0003.jpg", nullptr}}, {3}},
        Walk{"extension differs", {{"IMG_0001.CR2", nullptr}, {"IMG_0001.jpg", nullptr}}, {1, 1}},
        Walk{"people and outdoor", {{"IMG_0001.jpg", "MARK_PEOPLE_PORTRAIT"}, {"IMG_0002.jpg", "MARK_OUTDOOR"}}, {1, 1}},
        Walk{"people and no mark", {{"IMG_0001.jpg", "MARK_PEOPLE"}, {"IMG_0002.jpg", nullptr}}, {1, 1}},
        Walk{"no mark and a non-people mark", {{"IMG_0001.jpg", nullptr}, {"IMG_0002.jpg", "MARK_OUTDOOR"}}, {2}},
        Walk{"two people marks", {{"IMG_0001.jpg", "MARK_PEOPLE"}, {"IMG_0002.jpg", "MARK_PEOPLE_SCREENSHOT"}}, {2}},
        Walk{"length differs by 2", {{"a1.jpg", nullptr}, {"a123.jpg", nullptr}}, {2}},
        Walk{"length differs by 3", {{"a1.jpg", nullptr}, {"a1234.jpg", nullptr}}, {1, 1}},
        Walk{"source changes", {{"DSC01234.jpg", nullptr}, {"IMG_0001.jpg", nullptr}, {"IMG_0002.jpg", nullptr}}, {1, 2}},
        Walk{"compared with the neighbour only",
             {{"IMG_0001.jpg", "MARK_PEOPLE"}, {"IMG_0002.jpg", nullptr}, {"IMG_0003.jpg", "MARK_PEOPLE"}},
             {1, 1, 1}}));

TEST(NameGrouper, LogsWhyANewGroupBegins)
{
    LogCapture log;
    const QList<GroupResult> groups = NameGrouper::group(
        {FileInfo::from(QStringLiteral("IMG_0001.jpg"), QStringLiteral("MARK_PEOPLE_PORTRAIT")),
         FileInfo::from(QStringLiteral("IMG_0002.jpg")), FileInfo::from(QStringLiteral("IMG_0002.png"))});
    ASSERT_EQ(groups.size(), 3);
    EXPECT_TRUE(log.contains(QStringLiteral("EDIT1_NAMEWORK - 名称匹配但人物类型不同，开始新组: "
                                            "前文件类型(PEOPLE, MARK_PEOPLE_PORTRAIT) -> 新文件类型(非PEOPLE, nil)")));
    EXPECT_TRUE(log.contains(QStringLiteral("EDIT1_NAMEWORK - 主逻辑不匹配，开始新组: 前缀匹配=true, 扩展名匹配=false, "
                                            "长度差=0, 前文件类型(非PEOPLE) -> 新文件类型(非PEOPLE)")));
    EXPECT_TRUE(log.contains(QStringLiteral("EDIT1_NAMEWORK - 组 _G1_: 1 个文件，前缀: IMG_")));
    EXPECT_EQ(groups.at(2).number, QStringLiteral("3"));
}

TEST(NameGrouper, TwelveGroupsAreNumberedZeroToTwelveWithTwoDigits)
{
    QList<FileInfo> files;
    for (int i = 0; i < 12; ++i)
        files << FileInfo::from(QStringLiteral("f%1.%2").arg(i).arg(i % 2 ? QStringLiteral("jpg") : QStringLiteral("png")));
    const QList<GroupResult> groups = NameGrouper::group(files);
    ASSERT_EQ(groups.size(), 12);
    EXPECT_EQ(groups.first().number, QStringLiteral("01"));
    EXPECT_EQ(groups.last().number, QStringLiteral("12"));
}
