// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ImageRotator.h"
#include "platform/ExifOrientation.h"
#include "platform/TiffOrientationPatch.h"

#include "tests/support/HostilePictures.h"
#include "tests/support/TempFolder.h"
#include "tests/support/XdgTags.h"

#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>

#include <gtest/gtest.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;
using lumaro::testing::xdgTags;

namespace {

// TempFolder's pictures are 64×48 with a white top-left quarter; turned left, they are 48×64 with the white
// quarter at the bottom left.
void expectTurnedLeft(const QString& path, const char* format = nullptr)
{
    QImageReader reader(path, format);
    reader.setAutoTransform(true);
    const QImage image = reader.read();
    ASSERT_FALSE(image.isNull()) << qPrintable(reader.errorString());
    EXPECT_EQ(image.size(), QSize(48, 64));
    EXPECT_GT(qGray(image.pixel(5, 58)), 200) << "bottom left should be white";
    EXPECT_LT(qGray(image.pixel(5, 5)), 200) << "top left should be dark";
    EXPECT_LT(qGray(image.pixel(42, 58)), 200) << "bottom right should be dark";
}

class RewrittenFormats : public ::testing::TestWithParam<const char*>
{
};

} // namespace

TEST_P(RewrittenFormats, TurnsLeftAndKeepsTheTags)
{
    TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("shot.") + QString::fromLatin1(GetParam()));
    const bool tagged = lumaro::testing::setXdgTags(picture, "red");
    const RotationOutcome outcome = ImageRotator::rotateLeft(picture);
    ASSERT_EQ(outcome.status, RotationOutcome::Status::rotated) << qPrintable(outcome.error);
    expectTurnedLeft(picture);
    if (tagged) {
        EXPECT_EQ(xdgTags(picture), QByteArrayLiteral("red"));
    }
    EXPECT_EQ(folder.entries().size(), 1); // no temporary left beside it
}

INSTANTIATE_TEST_SUITE_P(ImageRotator, RewrittenFormats,
                         ::testing::Values("jpg", "JPEG", "png", "tiff", "tif", "bmp", "webp"));

TEST(ImageRotator, JpegTurnsThroughItsOrientationWithoutTouchingThePixels)
{
    TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("a.jpg"));
    ASSERT_EQ(ImageRotator::rotateLeft(picture).method, RotationOutcome::Method::exifOrientation);
    EXPECT_EQ(ExifOrientation::read(picture), 8);
    QImageReader raw(picture);
    raw.setAutoTransform(false);
    EXPECT_EQ(raw.read().size(), QSize(64, 48)); // stored pixels unchanged
    for (int turn = 0; turn < 3; ++turn)
        ASSERT_EQ(ImageRotator::rotateLeft(picture).status, RotationOutcome::Status::rotated);
    EXPECT_EQ(ExifOrientation::read(picture), 1); // four quarter turns: back upright
}

TEST(ImageRotator, OrientationTableIsAQuarterTurnForEveryStartingOrientation)
{
    // Each of the 8 orientations comes back to itself after four left turns and visits four different values.
    for (int start = 1; start <= 8; ++start) {
        QSet<int> seen;
        int o = start;
        for (int i = 0; i < 4; ++i) {
            seen.insert(o);
            o = ImageRotator::orientationAfterLeftTurn(o);
        }
        EXPECT_EQ(o, start);
        EXPECT_EQ(seen.size(), 4);
    }
}

TEST(ImageRotator, Cr2GetsItsOrientationTagPatchedInPlace)
{
    TempFolder folder;
    // A TIFF-structured file, which is what a CR2 is; Qt writes its Orientation tag.
    const QString tiff = folder.writePicture(QStringLiteral("raw.tiff"));
    const QString cr2 = folder.filePath(QStringLiteral("IMG_0001.CR2"));
    ASSERT_TRUE(QFile::rename(tiff, cr2));
    if (TiffOrientationPatch::read(cr2) == 0)
        GTEST_SKIP() << "this Qt writes TIFF without an Orientation tag";
    const QByteArray before = folder.read(QStringLiteral("IMG_0001.CR2"));

    const RotationOutcome outcome = ImageRotator::rotateLeft(cr2);
    ASSERT_EQ(outcome.status, RotationOutcome::Status::rotated) << qPrintable(outcome.error);
    EXPECT_EQ(outcome.method, RotationOutcome::Method::cr2Orientation);
    EXPECT_EQ(TiffOrientationPatch::read(cr2), 8);
    const QByteArray after = folder.read(QStringLiteral("IMG_0001.CR2"));
    ASSERT_EQ(after.size(), before.size());
    int changed = 0;
    for (qsizetype i = 0; i < after.size(); ++i)
        changed += after.at(i) != before.at(i);
    EXPECT_LE(changed, 2);
    expectTurnedLeft(cr2, "tiff");
}

TEST(ImageRotator, FormatsThatAreNotRewrittenAskForADisplayRotation)
{
    TempFolder folder;
    for (const char* name : {"a.heic", "b.HEIF", "c.gif", "d.nef", "e.dng"}) {
        const QString path = folder.write(QString::fromLatin1(name), QByteArrayLiteral("untouched"));
        EXPECT_EQ(ImageRotator::rotateLeft(path).status, RotationOutcome::Status::needsDisplayRotation)
            << name;
        EXPECT_EQ(folder.read(QString::fromLatin1(name)), QByteArrayLiteral("untouched"));
    }
    EXPECT_EQ(ImageRotator::rotateLeft(folder.write(QStringLiteral("notes.txt"))).status,
              RotationOutcome::Status::unsupportedFormat);
}

struct MultiFrameCase
{
    const char* name;
    QByteArray (*make)(int frames, QSize size);
};

class MultiFrameFormats : public ::testing::TestWithParam<MultiFrameCase>
{
};

// Rewriting through Qt would keep the first frame only: such a file is left as it is and turned on screen.
TEST_P(MultiFrameFormats, AreLeftWholeAndTurnedOnScreenOnly)
{
    TempFolder folder;
    const QByteArray bytes = GetParam().make(3, {16, 12});
    const QString path = folder.write(QString::fromLatin1(GetParam().name), bytes);
    QImageReader oracle(path);
    ASSERT_FALSE(oracle.read().isNull()) << qPrintable(oracle.errorString()); // a picture Qt reads
    const RotationOutcome outcome = ImageRotator::rotateLeft(path);
    EXPECT_EQ(outcome.status, RotationOutcome::Status::needsDisplayRotation);
    EXPECT_TRUE(outcome.error.contains(QStringLiteral("3 frames"))) << qPrintable(outcome.error);
    EXPECT_EQ(folder.read(QString::fromLatin1(GetParam().name)), bytes);
    EXPECT_EQ(folder.entries().size(), 1);
}

INSTANTIATE_TEST_SUITE_P(ImageRotator, MultiFrameFormats,
                         ::testing::Values(MultiFrameCase{"pages.tiff", &lumaro::testing::multiPageTiff},
                                           MultiFrameCase{"pages.tif", &lumaro::testing::multiPageTiff},
                                           MultiFrameCase{"anim.webp", &lumaro::testing::animatedWebp},
                                           MultiFrameCase{"anim.png", &lumaro::testing::animatedPng}));

TEST(ImageRotator, AStillOfEachFormatIsStillRewritten)
{
    TempFolder folder;
    for (const auto& [name, bytes] : {std::pair{"one.tiff", lumaro::testing::multiPageTiff(1, {16, 12})},
                                      std::pair{"one.png", lumaro::testing::animatedPng(1, {16, 12})}}) {
        const QString path = folder.write(QString::fromLatin1(name), bytes);
        const RotationOutcome outcome = ImageRotator::rotateLeft(path);
        EXPECT_EQ(outcome.status, RotationOutcome::Status::rotated) << name << qPrintable(outcome.error);
        EXPECT_EQ(QImageReader(path).size(), QSize(12, 16)) << name;
    }
}

// The bytes, not the name, decide: a camera JPEG renamed .png or .tif turns losslessly and stays a JPEG.
TEST(ImageRotator, AJpegUnderAnotherNameTurnsLosslessly)
{
    TempFolder folder;
    const QByteArray jpeg = lumaro::testing::jpegOfSize({64, 48});
    for (const char* name : {"renamed.png", "renamed.tif", "renamed.webp"}) {
        const QString path = folder.write(QString::fromLatin1(name), jpeg);
        const RotationOutcome outcome = ImageRotator::rotateLeft(path);
        ASSERT_EQ(outcome.status, RotationOutcome::Status::rotated) << name << qPrintable(outcome.error);
        EXPECT_EQ(outcome.method, RotationOutcome::Method::exifOrientation) << name;
        EXPECT_EQ(ExifOrientation::read(path), 8) << name;
        const QByteArray after = folder.read(QString::fromLatin1(name));
        EXPECT_TRUE(after.startsWith("\xFF\xD8")) << name;
        // The compressed picture is carried over as it was: only the metadata before it grew.
        EXPECT_TRUE(after.endsWith(jpeg.mid(jpeg.indexOf("\xFF\xDA")))) << name;
    }
}

TEST(ImageRotator, APngNamedJpgIsRewrittenAsThePngItIs)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("real.png"));
    const QString path =
        folder.write(QStringLiteral("misnamed.jpg"), folder.read(QStringLiteral("real.png")));
    const RotationOutcome outcome = ImageRotator::rotateLeft(path);
    ASSERT_EQ(outcome.status, RotationOutcome::Status::rotated) << qPrintable(outcome.error);
    EXPECT_EQ(outcome.method, RotationOutcome::Method::pixels);
    EXPECT_TRUE(folder.read(QStringLiteral("misnamed.jpg")).startsWith("\x89PNG"));
    expectTurnedLeft(path, "png");
}

TEST(ImageRotator, ATruncatedPictureFailsAndIsLeftAsItWas)
{
    TempFolder folder;
    for (const char* name : {"t.jpg", "t.png"}) {
        const QString full = folder.writePicture(QString::fromLatin1(name));
        QFile file(full);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        const QByteArray head = file.read(40);
        file.resize(0);
        file.seek(0);
        file.write(head);
        file.close();
        const RotationOutcome outcome = ImageRotator::rotateLeft(full);
        EXPECT_EQ(outcome.status, RotationOutcome::Status::failed) << name;
        EXPECT_FALSE(outcome.error.isEmpty());
        EXPECT_EQ(folder.read(QString::fromLatin1(name)), head);
    }
    EXPECT_EQ(folder.entries().size(), 2);
}
