// SPDX-License-Identifier: GPL-3.0-or-later
// Camera JPEGs carrying large previews in their MPF block: the smallest preview that covers the size asked
// for stands in for the picture, with the picture's orientation; anything doubtful falls back to the picture
// itself.
#include "platform/picture/PictureReader.h"

#include "tests/platform/ExifJpeg.h"
#include "tests/support/HostilePictures.h"
#include "tests/support/LittleEndian.h"
#include "tests/support/TempFolder.h"

#include <QtEndian>

#include <gtest/gtest.h>

namespace lumaro::platform {
namespace {

using testing::isNear;
using testing::jpegOfSize;
using testing::littleEndian16;
using testing::littleEndian32;
using testing::TempFolder;

// What a camera writes: the picture with an APP2 "MPF" block right after its start, listing itself and each
// preview; the previews follow the picture's end as whole JPEGs. `shift` moves the listed preview offsets (a
// damaged index).
QByteArray withPreviews(const QByteArray& picture, const QList<QByteArray>& previews, qint64 shift = 0)
{
    const quint32 count = quint32(previews.size() + 1);
    const quint32 entriesAt = 8 + 2 + 3 * 12 + 4; // after the TIFF header and an IFD of three entries
    const qsizetype tiffSize = entriesAt + 16 * count;
    const qsizetype segment = 2 + 2 + 4 + tiffSize; // marker, length, "MPF\0", the TIFF block
    const qsizetype pictureSize = picture.size() + segment;
    const qsizetype tiffStart = 2 + 2 + 2 + 4; // SOI, marker, length, "MPF\0"

    QByteArray tiff = QByteArrayLiteral("II*\0") + littleEndian32(8) + littleEndian16(3);
    tiff += littleEndian16(0xB000) + littleEndian16(7) + littleEndian32(4) + QByteArrayLiteral("0100");
    tiff += littleEndian16(0xB001) + littleEndian16(4) + littleEndian32(1) + littleEndian32(count);
    tiff +=
        littleEndian16(0xB002) + littleEndian16(7) + littleEndian32(16 * count) + littleEndian32(entriesAt);
    tiff += littleEndian32(0);
    tiff += littleEndian32(0x030000) + littleEndian32(quint32(pictureSize)) + littleEndian32(0) +
            littleEndian32(0);
    qint64 next = pictureSize;
    for (const QByteArray& preview : previews) {
        tiff += littleEndian32(0x010002) + littleEndian32(quint32(preview.size())) +
                littleEndian32(quint32(next - tiffStart + shift)) + littleEndian32(0);
        next += preview.size();
    }
    QByteArray length(2, '\0');
    qToBigEndian(quint16(segment - 2), length.data());
    QByteArray file = picture.left(2) + QByteArrayLiteral("\xFF\xE2") + length + QByteArrayLiteral("MPF\0") +
                      tiff + picture.mid(2);
    for (const QByteArray& preview : previews)
        file += preview;
    return file;
}

const QSize kPicture(1200, 800);

struct PreviewCase
{
    const char* name;
    QList<QPair<QSize, QColor>> previews;
    int maxSide = 256;
    bool allowEmbedded = true;
    qint64 shift = 0;
    QColor expected = Qt::red; // red: the picture itself was decoded

    DecodeRoute route() const
    {
        return expected == Qt::red ? DecodeRoute::jpegScaled : DecodeRoute::cameraPreview;
    }
};

class CameraPreviewTest : public ::testing::TestWithParam<PreviewCase>
{
};

TEST_P(CameraPreviewTest, TheSmallestCoveringPreviewOfThePicturesShapeStandsIn)
{
    const PreviewCase& c = GetParam();
    QList<QByteArray> previews;
    for (const auto& [size, color] : c.previews)
        previews << jpegOfSize(size, color);
    TempFolder folder;
    const QString path = folder.write(QStringLiteral("IMG_0001.JPG"),
                                      withPreviews(jpegOfSize(kPicture, Qt::red), previews, c.shift));

    const DecodedPicture picture = PictureReader::read(PictureRequest{path, c.maxSide, c.allowEmbedded, 0});
    ASSERT_FALSE(picture.isNull()) << picture.error.toStdString();
    EXPECT_EQ(picture.route, c.route());
    EXPECT_TRUE(
        isNear(picture.image.pixelColor(picture.image.width() / 2, picture.image.height() / 2), c.expected));
    EXPECT_EQ(std::max(picture.image.width(), picture.image.height()), std::min(c.maxSide, kPicture.width()));
}

const QList<QPair<QSize, QColor>> kOneBluePreview{{{600, 400}, Qt::blue}};

INSTANTIATE_TEST_SUITE_P(
    Cases, CameraPreviewTest,
    ::testing::Values(
        PreviewCase{.name = "previewCoversTheGrid", .previews = kOneBluePreview, .expected = Qt::blue},
        PreviewCase{.name = "smallestOfThoseThatCover",
                    .previews = {{{900, 600}, Qt::blue}, {{300, 200}, Qt::green}, {{150, 100}, Qt::yellow}},
                    .expected = Qt::green},
        PreviewCase{.name = "tooSmallForThePreviewPane", .previews = kOneBluePreview, .maxSide = 800},
        PreviewCase{.name = "letterboxedPreviewIsNotThePicture", .previews = {{{640, 360}, Qt::blue}}},
        PreviewCase{.name = "embeddedPicturesNotWanted", .previews = kOneBluePreview, .allowEmbedded = false},
        PreviewCase{.name = "indexPointingPastTheEnd", .previews = kOneBluePreview, .shift = 1 << 20},
        PreviewCase{.name = "indexPointingIntoThePicture", .previews = kOneBluePreview, .shift = -4000}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(CameraPreview, ThePreviewIsTurnedByThePicturesOrientation)
{
    TempFolder folder;
    const QByteArray turned = testing::withExif(jpegOfSize(kPicture, Qt::red), 6);
    const QString path = folder.write(QStringLiteral("IMG_0002.JPG"),
                                      withPreviews(turned, {jpegOfSize({600, 400}, Qt::blue)}));

    const DecodedPicture picture = PictureReader::read(PictureRequest{path, 256, true, 0});
    ASSERT_EQ(picture.route, DecodeRoute::cameraPreview);
    EXPECT_EQ(picture.image.height(), 256); // turned upright: a portrait
    EXPECT_NEAR(picture.image.width(), 171, 1);
}

} // namespace
} // namespace lumaro::platform
