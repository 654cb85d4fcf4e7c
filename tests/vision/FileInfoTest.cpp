// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/FileInfo.h"
#include "vision/GroupPrefix.h"

#include <gtest/gtest.h>

using namespace lumaro::vision;

struct NameParts
{
    const char* fileName;
    const char* prefix;
    const char* extension;
    int nameLength;
};

class FileInfoNameParts : public ::testing::TestWithParam<NameParts>
{
};

TEST_P(FileInfoNameParts, PrefixIsTheNameWithoutExtensionAndTrailingCounter)
{
    const FileInfo info = FileInfo::from(QString::fromUtf8(GetParam().fileName));
    EXPECT_EQ(info.prefix, QString::fromUtf8(GetParam().prefix));
    EXPECT_EQ(info.fileExtension, QString::fromUtf8(GetParam().extension));
    EXPECT_EQ(info.nameLength, GetParam().nameLength);
}

INSTANTIATE_TEST_SUITE_P(
    Names, FileInfoNameParts,
    ::testing::Values(NameParts{"IMG_0001.jpg", "IMG_", "jpg", 8}, NameParts{"DSC01234.ARW", "DSC", "arw", 8},
                      NameParts{"微信图片_20240101.png", "微信图片_", "png", 13},
                      NameParts{"IMG_20240101_123456.HEIC", "IMG_20240101_", "heic", 19},
                      NameParts{"holiday.jpg", "holiday", "jpg", 7}, NameParts{"0001.tif", "", "tif", 4},
                      NameParts{"my photo 12.jpeg", "my photo ", "jpeg", 11}, NameParts{"scan", "scan", "", 4},
                      NameParts{"a.b.12.gif", "a.b.", "gif", 6}));

TEST(FileInfo, OnlyMarksBeginningWithPeopleAreOfPeopleType)
{
    EXPECT_TRUE(FileInfo::from(QStringLiteral("a.jpg"), QStringLiteral("MARK_PEOPLE")).isPeopleType());
    EXPECT_TRUE(FileInfo::from(QStringLiteral("a.jpg"), QStringLiteral("MARK_PEOPLE_PORTRAIT")).isPeopleType());
    EXPECT_TRUE(FileInfo::from(QStringLiteral("a.jpg"), QStringLiteral("MARK_PEOPLE_SCREENSHOT")).isPeopleType());
    EXPECT_FALSE(FileInfo::from(QStringLiteral("a.jpg"), QStringLiteral("MARK_ILLUSTRATION_PEOPLE")).isPeopleType());
    EXPECT_FALSE(FileInfo::from(QStringLiteral("a.jpg"), QStringLiteral("MARK_OUTDOOR")).isPeopleType());
    EXPECT_FALSE(FileInfo::from(QStringLiteral("a.jpg")).isPeopleType());
}

struct Numbering
{
    int index;
    int groupCount;
    const char* number;
};

class GroupPrefixNumbering : public ::testing::TestWithParam<Numbering>
{
};

TEST_P(GroupPrefixNumbering, IsPaddedToTheDigitCountOfTheGroupCount)
{
    EXPECT_EQ(GroupPrefix::numberFor(GetParam().index, GetParam().groupCount), QLatin1String(GetParam().number));
}

INSTANTIATE_TEST_SUITE_P(Widths, GroupPrefixNumbering,
                         ::testing::Values(Numbering{1, 1, "1"}, Numbering{9, 9, "9"}, Numbering{1, 10, "01"},
                                           Numbering{1, 12, "01"}, Numbering{12, 12, "12"},
                                           Numbering{7, 100, "007"}, Numbering{1234, 1234, "1234"}));

struct Stripping
{
    const char* name;
    bool grouped;
    const char* stripped;
};

class GroupPrefixStripping : public ::testing::TestWithParam<Stripping>
{
};

TEST_P(GroupPrefixStripping, TakesOffExactlyOneLeadingPrefix)
{
    const QString name = QString::fromUtf8(GetParam().name);
    EXPECT_EQ(GroupPrefix::isGrouped(name), GetParam().grouped);
    EXPECT_EQ(GroupPrefix::stripped(name), QString::fromUtf8(GetParam().stripped));
}

INSTANTIATE_TEST_SUITE_P(
    Names, GroupPrefixStripping,
    ::testing::Values(Stripping{"_G3_IMG_0001.jpg", true, "IMG_0001.jpg"}, Stripping{"_G12_", true, ""},
                      Stripping{"_G01__G2_x.jpg", true, "_G2_x.jpg"}, Stripping{"_G1_123_a.jpg", true, "123_a.jpg"},
                      Stripping{"_G_a.jpg", false, "_G_a.jpg"}, Stripping{"_g1_a.jpg", false, "_g1_a.jpg"},
                      Stripping{"x_G1_a.jpg", false, "x_G1_a.jpg"}, Stripping{"_G١_a.jpg", false, "_G١_a.jpg"}));
