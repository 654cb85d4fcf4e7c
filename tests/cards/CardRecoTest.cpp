// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardReco.h"

#include "tests/cards/CardLayouts.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace lumaro::cards;
using namespace lumaro::testing;

struct RecoCase
{
    const char* volume;
    std::vector<const char*> entries; // a name ending in '/' is a folder
    std::optional<CameraType> type;
    const char* information = "";
};

class Recognition : public ::testing::TestWithParam<RecoCase>
{
};

// The volume name corroborates an IXUS card but never decides.
TEST_P(Recognition, GoesByTheFormatFilesACameraWrites)
{
    const RecoCase& c = GetParam();
    TempFolder card;
    const QString root = QString::fromUtf8(c.volume) + QLatin1Char('/');
    for (const QString entry : c.entries)
        entry.endsWith(QLatin1Char('/')) ? card.makeFolder(root + entry) : card.write(root + entry);

    const auto result = CardReco::recognize(card.filePath(QString::fromUtf8(c.volume)));

    ASSERT_EQ(result.has_value(), c.type.has_value());
    if (!result)
        return;
    EXPECT_EQ(result->cameraType, *c.type);
    EXPECT_EQ(result->matchInformation, QString::fromUtf8(c.information));
}

const char* const kIxus = "检测到 Canon IXUS 系列格式化特征：/DCIM/131CANON 目录存在";

INSTANTIATE_TEST_SUITE_P(
    Cards, Recognition,
    ::testing::Values(
        RecoCase{"EOS_DIGITAL",
                 {"DCIM/CANONMSC/M3100.CTG", "MISC/", "DCIM/100CANON/"},
                 CameraType::canonR,
                 "检测到 Canon R 系列格式化特征：/DCIM/CANONMSC/M3100.CTG 和 /MISC 目录存在"},
        RecoCase{"CANON_DC",
                 {"DCIM/131CANON/"},
                 CameraType::canonIXUS,
                 "检测到 Canon IXUS 系列格式化特征：/DCIM/131CANON 目录存在，磁盘名称匹配 CANON_DC"},
        RecoCase{"canon_dc",
                 {"DCIM/131CANON/"},
                 CameraType::canonIXUS,
                 "检测到 Canon IXUS 系列格式化特征：/DCIM/131CANON 目录存在，磁盘名称匹配 CANON_DC"},
        RecoCase{"UNTITLED", {"DCIM/131CANON/"}, CameraType::canonIXUS, kIxus},
        RecoCase{"no_misc", {"DCIM/CANONMSC/M3100.CTG", "DCIM/131CANON/"}, CameraType::canonIXUS, kIxus},
        RecoCase{"canon_dc", {"DCIM/100CANON/"}, std::nullopt},
        RecoCase{"nikon", {"DCIM/100NIKON/DSC_0001.JPG"}, std::nullopt}));

TEST(CardReco, CountsCameraFoldersOnlyAndReadsTheCameraFromExif)
{
    TempFolder card;
    buildCanonRCard(card, QStringLiteral("card"));
    card.write(QStringLiteral("card/DCIM/100CANON/IMG_0001.JPG"), jpegWithCamera("Canon", "Canon EOS R5"));
    card.write(QStringLiteral("card/DCIM/100CANON/IMG_0001.CR3"));
    card.write(QStringLiteral("card/DCIM/101_0612/IMG_0002.jpeg"));
    card.write(QStringLiteral("card/DCIM/101_0612/MVI_0003.MP4"));
    card.write(QStringLiteral("card/DCIM/101_0612/deeper/IMG_0009.JPG")); // deeper levels are not visited
    card.write(QStringLiteral("card/DCIM/CANONMSC/IMG_0004.JPG"));        // not a camera folder
    card.write(QStringLiteral("card/DCIM/IMG_0005.cr3"));                 // directly in DCIM: counted
    LogCapture log;

    const DigitalCardStats stats =
        CardReco::statistics(card.filePath(QStringLiteral("card")), CameraType::canonR);

    EXPECT_EQ(stats.jpgCount, 2);
    EXPECT_EQ(stats.rawCount, 2);
    EXPECT_EQ(stats.videoCount, 1);
    EXPECT_EQ(stats.rawFormat, QStringLiteral("CR3"));
    EXPECT_EQ(stats.videoFormat, QStringLiteral("MP4"));
    EXPECT_EQ(stats.cameraMakeModel, QStringLiteral("Canon EOS R5"));
    EXPECT_TRUE(log.contains(QStringLiteral("📷 EXIF 拍摄设备: Canon EOS R5")));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("📊 CanonR 存储卡统计: ")), 1);
}

TEST(CardReco, IxusCountsAviAsVideoAndNoRaw)
{
    TempFolder card;
    buildCanonIxusCard(card, QStringLiteral("CANON_DC"));
    card.write(QStringLiteral("CANON_DC/DCIM/131CANON/IMG_0001.JPG"), jpegWithCamera("Canon", "IXUS 285 HS"));
    card.write(QStringLiteral("CANON_DC/DCIM/131CANON/MVI_0002.AVI"));
    card.write(QStringLiteral("CANON_DC/DCIM/131CANON/MVI_0002.THM"));
    card.write(QStringLiteral("CANON_DC/DCIM/131CANON/IMG_0003.CR3"));

    const DigitalCardStats stats =
        CardReco::statistics(card.filePath(QStringLiteral("CANON_DC")), CameraType::canonIXUS);

    EXPECT_EQ(stats.jpgCount, 1);
    EXPECT_EQ(stats.rawCount, 0);
    EXPECT_TRUE(stats.rawFormat.isEmpty());
    EXPECT_EQ(stats.videoCount, 1);
    EXPECT_EQ(stats.cameraMakeModel, QStringLiteral("Canon IXUS 285 HS"));
}

TEST(CardReco, ACardWithoutDcimReportsZeroCounts)
{
    TempFolder card;
    LogCapture log;

    const DigitalCardStats stats = CardReco::statistics(card.path(), CameraType::canonIXUS);

    EXPECT_EQ(stats.jpgCount + stats.rawCount + stats.videoCount, 0);
    EXPECT_TRUE(
        log.contains(QStringLiteral("⚠️ CanonIXUS 统计: DCIM 目录不存在 - ") + card.path()));
}

struct ExifCase
{
    QByteArray content;
    const char* logPrefix;
};

class CameraExif : public ::testing::TestWithParam<ExifCase>
{
};

TEST_P(CameraExif, FailuresLeaveTheMakeAndModelEmpty)
{
    TempFolder card;
    buildCanonIxusCard(card, QStringLiteral("c"));
    card.write(QStringLiteral("c/DCIM/131CANON/IMG_0001.JPG"), GetParam().content);
    LogCapture log;

    const DigitalCardStats stats =
        CardReco::statistics(card.filePath(QStringLiteral("c")), CameraType::canonIXUS);

    EXPECT_TRUE(stats.cameraMakeModel.isEmpty());
    EXPECT_EQ(log.countStartingWith(QString::fromUtf8(GetParam().logPrefix)), 1);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, CameraExif,
    ::testing::Values(
        ExifCase{QByteArray("not a picture"), "⚠️ EXIF 读取失败: 无法创建图像源 - "},
        ExifCase{plainJpeg(), "⚠️ EXIF 读取失败: 无法获取属性 - "},
        ExifCase{jpegWithCamera("Canon", ""), "⚠️ EXIF 中未找到完整的品牌/机型信息 - "}));
