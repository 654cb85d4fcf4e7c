// SPDX-License-Identifier: GPL-3.0-or-later
// The decode routes of PictureReader per format: EXIF orientation, the EXIF thumbnail, DCT scaling, Qt
// formats, and files that are cut short or are not pictures at all.
#include "platform/picture/PictureReader.h"

#include "tests/platform/ExifJpeg.h"
#include "tests/support/HostilePictures.h"
#include "tests/support/TempFolder.h"

#include <QFileInfo>
#include <QImageReader>

#include <gtest/gtest.h>

namespace lumaro::platform {
namespace {

using testing::isNear;
using testing::jpegOfSize;
using testing::TempFolder;
using testing::withExif;

DecodedPicture decode(const QString& path, int maxSide = 0, bool embedded = false, int rotation = 0)
{
    return PictureReader::read(PictureRequest{path, maxSide, embedded, rotation});
}

class OrientationTest : public ::testing::TestWithParam<int>
{
};

// Every EXIF orientation turns the pixels the way Qt's own EXIF handling does (our oracle here).
TEST_P(OrientationTest, JpegIsTurnedUprightLikeQtAutoTransform)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("o.jpg"), QSize(80, 40));
    const QString path =
        folder.write(QStringLiteral("o.jpg"), withExif(folder.read(QStringLiteral("o.jpg")), GetParam()));
    QImageReader reference(path);
    reference.setAutoTransform(true);
    const QImage expected = reference.read();

    const DecodedPicture picture = decode(path);

    ASSERT_FALSE(picture.isNull()) << qPrintable(picture.error);
    EXPECT_EQ(picture.route, DecodeRoute::jpegScaled);
    ASSERT_EQ(picture.image.size(), expected.size());
    for (const QPoint at : {QPoint(5, 5), QPoint(expected.width() - 6, 5), QPoint(5, expected.height() - 6),
                            QPoint(expected.width() - 6, expected.height() - 6)})
        EXPECT_TRUE(isNear(picture.image.pixelColor(at), expected.pixelColor(at)))
            << "orientation " << GetParam() << " at " << at.x() << "," << at.y();
}

INSTANTIATE_TEST_SUITE_P(AllEight, OrientationTest, ::testing::Range(1, 9));

// A big enough EXIF thumbnail stands in for the grid, turned by the file's orientation.
TEST(PictureReaderTest, BigEnoughExifThumbnailStandsInForTheGridTurnedUpright)
{
    TempFolder folder;
    const QString path =
        folder.write(QStringLiteral("camera.jpg"),
                     withExif(jpegOfSize({1200, 800}, Qt::blue), 6, jpegOfSize({320, 213}, Qt::red)));

    const DecodedPicture grid = decode(path, 256, true);
    ASSERT_FALSE(grid.isNull());
    EXPECT_EQ(grid.route, DecodeRoute::exifThumbnail);
    EXPECT_EQ(grid.image.height(), 256); // turned: a portrait
    EXPECT_GT(grid.image.height(), grid.image.width());
    EXPECT_TRUE(isNear(grid.image.pixelColor(grid.image.width() / 2, grid.image.height() / 2), Qt::red));

    // Too small for the size asked, or not allowed (previews): the pixels are decoded.
    EXPECT_EQ(decode(path, 400, true).route, DecodeRoute::jpegScaled);
    EXPECT_EQ(decode(path, 256, false).route, DecodeRoute::jpegScaled);
}

TEST(PictureReaderTest, LargeJpegIsScaledToTheLongSideAsked)
{
    TempFolder folder;
    const QString path = folder.writePicture(QStringLiteral("big.jpg"), QSize(3000, 2000));
    const DecodedPicture picture = decode(path, 256, true);
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(picture.route, DecodeRoute::jpegScaled);
    EXPECT_EQ(picture.image.size(), QSize(256, 170));
    EXPECT_TRUE(isNear(picture.image.pixelColor(20, 20), Qt::white)); // the top-left quarter stays top-left
}

TEST(PictureReaderTest, DisplayRotationTurnsClockwiseOnTopOfTheFile)
{
    TempFolder folder;
    const QString path = folder.writePicture(QStringLiteral("r.png"), QSize(80, 40));
    const DecodedPicture picture = decode(path, 0, false, 90);
    ASSERT_EQ(picture.image.size(), QSize(40, 80));
    EXPECT_TRUE(isNear(picture.image.pixelColor(35, 5), Qt::white)); // top-left went to top-right
}

class QtFormatTest : public ::testing::TestWithParam<const char*>
{
};

TEST_P(QtFormatTest, DecodesThroughQtWithinTheSizeAsked)
{
    TempFolder folder;
    const QString path =
        folder.writePicture(QStringLiteral("p.") + QLatin1String(GetParam()), QSize(600, 300));
    const DecodedPicture picture = decode(path, 200, true);
    ASSERT_FALSE(picture.isNull()) << qPrintable(picture.error);
    EXPECT_EQ(picture.route, DecodeRoute::qt);
    EXPECT_EQ(picture.image.size(), QSize(200, 100));
}

INSTANTIATE_TEST_SUITE_P(Formats, QtFormatTest, ::testing::Values("png", "tiff", "bmp", "webp"));

TEST(PictureReaderTest, GifGivesItsFirstFrame)
{
    TempFolder folder;
    // The smallest valid GIF: one red pixel (Qt reads GIF but cannot write it).
    const QByteArray gif =
        QByteArray::fromHex("47494638396101000100800000ff000000000021f90401000000002c00000000"
                            "010001000002024401003b");
    const DecodedPicture picture = decode(folder.write(QStringLiteral("one.gif"), gif), 256, true);
    ASSERT_FALSE(picture.isNull()) << qPrintable(picture.error);
    EXPECT_EQ(picture.image.size(), QSize(1, 1));
}

TEST(PictureReaderTest, PngNamedJpgIsStillRead)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("real.png"), QSize(64, 48));
    const QString misnamed =
        folder.write(QStringLiteral("misnamed.jpg"), folder.read(QStringLiteral("real.png")));
    const DecodedPicture picture = decode(misnamed, 256, true);
    ASSERT_FALSE(picture.isNull()) << qPrintable(picture.error);
    EXPECT_EQ(picture.image.size(), QSize(64, 48));
}

class BrokenFileTest : public ::testing::TestWithParam<const char*>
{
};

// A copy cut short (other than a JPEG), an empty file, text under a picture's name, a file that is not there,
// a CR2 on which exiv2 throws std::overflow_error rather than its own error type, or a HEIF whose stream
// makes a picture hundreds of times the size it declares (beyond the side it declares, or within it): no
// image, a reason, no crash.
TEST_P(BrokenFileTest, GivesNoImageAndAReason)
{
    TempFolder folder;
    const QString name = QLatin1String(GetParam());
    QString path = folder.filePath(name);
    if (name.startsWith(QLatin1String("cut."))) {
        const QString whole =
            folder.writePicture(QStringLiteral("whole.") + QFileInfo(name).suffix(), QSize(800, 600));
        const QByteArray bytes = folder.read(QFileInfo(whole).fileName());
        folder.write(name, bytes.left(bytes.size() / 2));
    } else if (name.startsWith(QLatin1String("empty."))) {
        folder.write(name, QByteArray());
    } else if (name.startsWith(QLatin1String("text."))) {
        folder.write(name, QByteArrayLiteral("this is not a picture at all\n"));
    } else if (name.startsWith(QLatin1String("looping."))) {
        folder.write(name, testing::selfReferencingCr2());
    } else if (name.startsWith(QLatin1String("declares-"))) {
        // Files the HEIF fuzz harness found: the coded stream makes a picture far bigger than declared.
        QFile::copy(QStringLiteral(LUMARO_SOURCE_DIR "/fuzz/heif/corpus/") + name, path);
    } else if (name.startsWith(QLatin1String("tall-strip."))) {
        // The 32×9056 strip declared 32×16500: now libheif lets the 16416×6144 picture through.
        QFile file(QStringLiteral(LUMARO_SOURCE_DIR "/fuzz/heif/corpus/declares-32x9056-decodes-16416x6144.heic"));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        QByteArray bytes = file.readAll();
        const QByteArray declared = QByteArray::fromHex("697370650000000000000020" "00002360");
        ASSERT_EQ(bytes.count(declared), 1);
        bytes.replace(declared, QByteArray::fromHex("697370650000000000000020" "00004074"));
        folder.write(name, bytes);
    }
    for (const int side : {256, 0}) {
        const DecodedPicture picture = decode(path, side, true);
        EXPECT_TRUE(picture.isNull()) << qPrintable(name);
        EXPECT_FALSE(picture.error.isEmpty()) << qPrintable(name);
        if (name.startsWith(QLatin1String("tall-strip.")))
            EXPECT_TRUE(picture.error.contains(QLatin1String("more pixels than it declares")))
                << qPrintable(picture.error);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, BrokenFileTest,
                         ::testing::Values("empty.jpg", "text.jpg", "text.cr2", "text.nef", "text.heic",
                                           "text.png", "empty.tiff", "text.webp", "looping.CR2",
                                           "missing.jpg", "missing.cr2",
                                           "declares-32x24-decodes-16416x6144.heic",
                                           "declares-32x9056-decodes-16416x6144.heic", "tall-strip.heic"));

// A picture caught in its first bytes (still being copied in) is called what it is, not a lack of memory.
TEST(PictureReaderTest, AJpegOfOnlyItsFirstBytesIsCalledCutShort)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("whole.jpg"), QSize(800, 600));
    const QString path =
        folder.write(QStringLiteral("copying.jpg"), folder.read(QStringLiteral("whole.jpg")).left(10));
    for (const int side : {256, 0}) {
        const DecodedPicture picture = decode(path, side, true);
        EXPECT_TRUE(picture.isNull());
        EXPECT_TRUE(picture.error.contains(QLatin1String("Premature end"))) << qPrintable(picture.error);
    }
}

// A JPEG cut short shows what can be decoded, with the reason: its own EXIF thumbnail when it has one (the
// whole picture, small), else the rows that made it into the file.
TEST(PictureReaderTest, AJpegCutShortShowsWhatIsThere)
{
    TempFolder folder;
    const QByteArray whole = jpegOfSize({800, 600}, Qt::darkGreen);
    const QByteArray thumbed = withExif(whole, 1, jpegOfSize({160, 120}, Qt::magenta));
    const QString bare = folder.write(QStringLiteral("bare.jpg"), whole.left(whole.size() / 2));
    const QString withThumb = folder.write(QStringLiteral("thumb.jpg"), thumbed.left(thumbed.size() / 2));

    for (const int side : {256, 0}) {
        const DecodedPicture part = decode(bare, side, false);
        ASSERT_FALSE(part.isNull()) << side;
        EXPECT_TRUE(part.isPartial());
        EXPECT_TRUE(isNear(part.image.pixelColor(4, 4), Qt::darkGreen));

        const DecodedPicture small = decode(withThumb, side, false);
        ASSERT_FALSE(small.isNull()) << side;
        EXPECT_EQ(small.route, DecodeRoute::exifThumbnail);
        EXPECT_TRUE(isNear(small.image.pixelColor(4, 4), Qt::magenta));
    }
}

// A long side fitted into the size asked must not take the short side down to nothing.
TEST(PictureReaderTest, AStripKeepsAtLeastOneRowAtEverySize)
{
    TempFolder folder;
    const QString jpeg = folder.write(QStringLiteral("strip.jpg"), jpegOfSize({40000, 8}));
    const QString png = folder.writePicture(QStringLiteral("strip.png"), {8, 40000});
    for (const int side : {256, 64, 1}) {
        const DecodedPicture wide = decode(jpeg, side);
        ASSERT_FALSE(wide.isNull()) << side << " " << qPrintable(wide.error);
        EXPECT_EQ(wide.image.size(), QSize(side, 1));
        const DecodedPicture tall = decode(png, side);
        ASSERT_FALSE(tall.isNull()) << side << " " << qPrintable(tall.error);
        EXPECT_EQ(tall.image.size(), QSize(1, side));
    }
}

} // namespace
} // namespace lumaro::platform
