// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardReco.h"

#include "platform/ImageMetadata.h"
#include "tests/cards/CardLayouts.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace lumaro::cards;
using namespace lumaro::testing;

TEST(CardReco, RecognisesCanonRByItsFormatFiles)
{
    TempFolder card;
    buildCanonRCard(card, QStringLiteral("EOS_DIGITAL"));
    LogCapture log;

    const auto result = CardReco::recognize(card.filePath(QStringLiteral("EOS_DIGITAL")));

    ASSERT_TRUE(result);
    EXPECT_EQ(result->cameraType, CameraType::canonR);
    EXPECT_EQ(result->matchInformation,
              QStringLiteral("检测到 Canon R 系列格式化特征：/DCIM/CANONMSC/M3100.CTG 和 /MISC 目录存在"));
    EXPECT_TRUE(log.contains(QStringLiteral("📷 存储卡识别成功: Canon R 系列")));
}

struct IxusCase
{
    const char* volume;
    const char* information;
};

class IxusVolumeName : public ::testing::TestWithParam<IxusCase>
{
};

TEST_P(IxusVolumeName, CorroboratesButDoesNotDecide)
{
    TempFolder card;
    buildCanonIxusCard(card, QString::fromUtf8(GetParam().volume));

    const auto result = CardReco::recognize(card.filePath(QString::fromUtf8(GetParam().volume)));

    ASSERT_TRUE(result);
    EXPECT_EQ(result->cameraType, CameraType::canonIXUS);
    EXPECT_EQ(result->matchInformation, QString::fromUtf8(GetParam().information));
}

INSTANTIATE_TEST_SUITE_P(
    Volumes, IxusVolumeName,
    ::testing::Values(IxusCase{"CANON_DC", "检测到 Canon IXUS 系列格式化特征：/DCIM/131CANON 目录存在，磁盘名称匹配 CANON_DC"},
                      IxusCase{"canon_dc", "检测到 Canon IXUS 系列格式化特征：/DCIM/131CANON 目录存在，磁盘名称匹配 CANON_DC"},
                      IxusCase{"UNTITLED", "检测到 Canon IXUS 系列格式化特征：/DCIM/131CANON 目录存在"}));

TEST(CardReco, WithoutMiscACanonRFileIsNotEnoughAndIxusDecides)
{
    TempFolder card;
    card.write(QStringLiteral("DCIM/CANONMSC/M3100.CTG"));
    card.makeFolder(QStringLiteral("DCIM/131CANON"));

    const auto result = CardReco::recognize(card.path());

    ASSERT_TRUE(result);
    EXPECT_EQ(result->cameraType, CameraType::canonIXUS);
}

TEST(CardReco, AVolumeNamedCanonDcWithoutTheFolderIsNotRecognised)
{
    TempFolder card;
    card.makeFolder(QStringLiteral("canon_dc/DCIM/100CANON"));

    EXPECT_FALSE(CardReco::recognize(card.filePath(QStringLiteral("canon_dc"))));
}

TEST(CardReco, AnUnknownCardIsNotRecognised)
{
    TempFolder card;
    card.write(QStringLiteral("DCIM/100NIKON/DSC_0001.JPG"));

    EXPECT_FALSE(CardReco::recognize(card.path()));
}

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

    const DigitalCardStats stats = CardReco::statistics(card.filePath(QStringLiteral("card")), CameraType::canonR);

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

    const DigitalCardStats stats = CardReco::statistics(card.filePath(QStringLiteral("CANON_DC")), CameraType::canonIXUS);

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
    EXPECT_TRUE(log.contains(QStringLiteral("⚠️ CanonIXUS 统计: DCIM 目录不存在 - ") + card.path()));
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

    const DigitalCardStats stats = CardReco::statistics(card.filePath(QStringLiteral("c")), CameraType::canonIXUS);

    EXPECT_TRUE(stats.cameraMakeModel.isEmpty());
    EXPECT_EQ(log.countStartingWith(QString::fromUtf8(GetParam().logPrefix)), 1);
}

INSTANTIATE_TEST_SUITE_P(Faults, CameraExif,
                         ::testing::Values(ExifCase{QByteArray("not a picture"), "⚠️ EXIF 读取失败: 无法创建图像源 - "},
                                           ExifCase{plainJpeg(), "⚠️ EXIF 读取失败: 无法获取属性 - "},
                                           ExifCase{jpegWithCamera("Canon", ""), "⚠️ EXIF 中未找到完整的品牌/机型信息 - "}));

TEST(ImageMetadata, ReadsMakeAndModel)
{
    TempFolder folder;
    const QString path = folder.write(QStringLiteral("a.jpg"), jpegWithCamera("NIKON CORPORATION", "NIKON Z 6"));

    const auto metadata = lumaro::platform::ImageMetadata::read(path);

    EXPECT_EQ(metadata.status, lumaro::platform::ImageMetadata::Status::ok);
    EXPECT_EQ(metadata.make, QStringLiteral("NIKON CORPORATION"));
    EXPECT_EQ(metadata.model, QStringLiteral("NIKON Z 6"));
}
