// SPDX-License-Identifier: GPL-3.0-or-later
// Camera JPEGs carrying large previews in their MPF block: the smallest preview that covers the size asked
// for stands in for the picture, with the picture's orientation; anything doubtful falls back to the picture
// itself.
#include "platform/picture/PictureReader.h"

#include "tests/support/TempFolder.h"

#include <QBuffer>
#include <QFile>
#include <QtEndian>

#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>

namespace lumaro::platform {
namespace {

using testing::TempFolder;

QByteArray jpeg(QSize size, QColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "jpg", 90);
    return bytes;
}

QByteArray littleEndian16(quint16 value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray littleEndian32(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

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

QByteArray withOrientation(const QByteArray& picture, int orientation)
{
    auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(picture.constData()),
                                           long(picture.size()));
    image->readMetadata();
    image->exifData()["Exif.Image.Orientation"] = uint16_t(orientation);
    image->writeMetadata();
    Exiv2::BasicIo& io = image->io();
    io.seek(0, Exiv2::BasicIo::beg);
    const Exiv2::DataBuf all = io.read(long(io.size()));
    return QByteArray(reinterpret_cast<const char*>(all.pData_), qsizetype(all.size_));
}

bool near(QColor a, QColor b)
{
    return std::abs(a.red() - b.red()) < 40 && std::abs(a.green() - b.green()) < 40 &&
           std::abs(a.blue() - b.blue()) < 40;
}

const QSize kPicture(1200, 800);

struct PreviewCase
{
    const char* name;
    QList<QPair<QSize, QColor>> previews;
    int maxSide;
    bool allowEmbedded;
    qint64 shift;
    QColor expected; // red: the picture itself was decoded
    DecodeRoute route;
};

class CameraPreviewTest : public ::testing::TestWithParam<PreviewCase>
{
};

TEST_P(CameraPreviewTest, TheSmallestCoveringPreviewOfThePicturesShapeStandsIn)
{
    const PreviewCase& c = GetParam();
    QList<QByteArray> previews;
    for (const auto& [size, color] : c.previews)
        previews << jpeg(size, color);
    TempFolder folder;
    const QString path = folder.write(QStringLiteral("IMG_0001.JPG"),
                                      withPreviews(jpeg(kPicture, Qt::red), previews, c.shift));

    const DecodedPicture picture = PictureReader::read(PictureRequest{path, c.maxSide, c.allowEmbedded, 0});
    ASSERT_FALSE(picture.isNull()) << picture.error.toStdString();
    EXPECT_EQ(picture.route, c.route);
    EXPECT_TRUE(
        near(picture.image.pixelColor(picture.image.width() / 2, picture.image.height() / 2), c.expected));
    EXPECT_EQ(std::max(picture.image.width(), picture.image.height()), std::min(c.maxSide, kPicture.width()));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CameraPreviewTest,
    ::testing::Values(PreviewCase{"previewCoversTheGrid",
                                  {{{600, 400}, Qt::blue}},
                                  256,
                                  true,
                                  0,
                                  Qt::blue,
                                  DecodeRoute::cameraPreview},
                      PreviewCase{"smallestOfThoseThatCover",
                                  {{{900, 600}, Qt::blue}, {{300, 200}, Qt::green}, {{150, 100}, Qt::yellow}},
                                  256,
                                  true,
                                  0,
                                  Qt::green,
                                  DecodeRoute::cameraPreview},
                      PreviewCase{"tooSmallForThePreviewPane",
                                  {{{600, 400}, Qt::blue}},
                                  800,
                                  true,
                                  0,
                                  Qt::red,
                                  DecodeRoute::jpegScaled},
                      PreviewCase{"letterboxedPreviewIsNotThePicture",
                                  {{{640, 360}, Qt::blue}},
                                  256,
                                  true,
                                  0,
                                  Qt::red,
                                  DecodeRoute::jpegScaled},
                      PreviewCase{"embeddedPicturesNotWanted",
                                  {{{600, 400}, Qt::blue}},
                                  256,
                                  false,
                                  0,
                                  Qt::red,
                                  DecodeRoute::jpegScaled},
                      PreviewCase{"indexPointingPastTheEnd",
                                  {{{600, 400}, Qt::blue}},
                                  256,
                                  true,
                                  1 << 20,
                                  Qt::red,
                                  DecodeRoute::jpegScaled},
                      PreviewCase{"indexPointingIntoThePicture",
                                  {{{600, 400}, Qt::blue}},
                                  256,
                                  true,
                                  -4000,
                                  Qt::red,
                                  DecodeRoute::jpegScaled}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(CameraPreview, ThePreviewIsTurnedByThePicturesOrientation)
{
    TempFolder folder;
    const QByteArray turned = withOrientation(jpeg(kPicture, Qt::red), 6);
    const QString path =
        folder.write(QStringLiteral("IMG_0002.JPG"), withPreviews(turned, {jpeg({600, 400}, Qt::blue)}));

    const DecodedPicture picture = PictureReader::read(PictureRequest{path, 256, true, 0});
    ASSERT_EQ(picture.route, DecodeRoute::cameraPreview);
    EXPECT_EQ(picture.image.height(), 256); // turned upright: a portrait
    EXPECT_NEAR(picture.image.width(), 171, 1);
}

} // namespace
} // namespace lumaro::platform
