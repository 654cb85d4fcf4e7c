// SPDX-License-Identifier: GPL-3.0-or-later
// The report's figures on a shoot written with known EXIF: pace, bursts,
// breaks, orientation, gear, culling.
#include "tests/report/ShootPictures.h"
#include "tests/report/ShootReport.h"

#include <gtest/gtest.h>

#include <array>

namespace lumaro::report {
namespace {

using testing::cameraShot;
using testing::ExifTags;
using testing::MapTags;
using testing::reportOf;

QString at(int second, int minute = 0, int hour = 10)
{
    return QStringLiteral("2024:05:01 %1:%2:%3")
        .arg(hour, 2, 10, QLatin1Char('0'))
        .arg(minute, 2, 10, QLatin1Char('0'))
        .arg(second, 2, 10, QLatin1Char('0'));
}

TEST(ShootingReport, PaceBurstsAndBreaks)
{
    testing::TempFolder folder;
    int n = 0;
    // A burst of five frames a tenth of a second apart, JPEG + RAW each: 5
    // exposures, 10 files.
    for (int i = 0; i < 5; ++i) {
        const ExifTags shot = cameraShot(at(0), QStringLiteral("%1").arg(i), ++n);
        testing::writeShot(folder, QStringLiteral("B_%1.JPG").arg(i), shot);
        testing::writeShot(folder, QStringLiteral("B_%1.CR2").arg(i), shot);
    }
    // Two single frames two seconds apart in the next minute: no burst.
    testing::writeShot(folder, QStringLiteral("S_1.JPG"), cameraShot(at(10, 1), QStringLiteral("0"), ++n));
    testing::writeShot(folder, QStringLiteral("S_2.JPG"), cameraShot(at(12, 1), QStringLiteral("0"), ++n));
    // After a 25-minute break, a frame at 10:26:12.
    testing::writeShot(folder, QStringLiteral("L_1.JPG"), cameraShot(at(12, 26), QStringLiteral("0"), ++n));

    const ShootingReport report = reportOf(folder.path());
    EXPECT_EQ(report.files, 13);
    EXPECT_EQ(report.exposures, 8);
    ASSERT_EQ(report.bursts.size(), 1);
    EXPECT_EQ(report.bursts.first().frames, 5);
    EXPECT_NEAR(report.bursts.first().seconds, 0.4, 1e-9);
    EXPECT_EQ(report.framesInBursts, 5);
    ASSERT_EQ(report.gaps.size(), 1);
    EXPECT_EQ(report.gaps.first().from.toString(QStringLiteral("HH:mm:ss")), QStringLiteral("10:01:12"));
    EXPECT_EQ(report.gaps.first().to.toString(QStringLiteral("HH:mm:ss")), QStringLiteral("10:26:12"));
    ASSERT_EQ(report.timeline.size(), 3);
    EXPECT_EQ(report.timeline.at(0).count, 5);
    EXPECT_EQ(report.timeline.at(1).count, 2);
    EXPECT_EQ(report.timeline.at(2).count, 1);
    ASSERT_TRUE(report.busiestMinute);
    EXPECT_EQ(report.busiestMinute->minute.toString(QStringLiteral("HH:mm")), QStringLiteral("10:00"));
    EXPECT_NEAR(report.shootingMinutes, 26.2, 1e-9);
    EXPECT_NEAR(report.picturesPerMinute, 8 / 26.2, 1e-9);
    EXPECT_NEAR(report.activePicturesPerMinute, 8 / (26.2 - 25.0), 1e-9);
    ASSERT_EQ(report.cameras.size(), 1);
    EXPECT_EQ(report.cameras.first().firstImageNumber, 1);
    EXPECT_EQ(report.cameras.first().lastImageNumber, 8);
}

TEST(ShootingReport, OrientationAfterExifRotationWithSquareApart)
{
    testing::TempFolder folder;
    struct Case
    {
        const char* name;
        QSize size;
        int orientation;
    };
    const Case cases[] = {{"a.JPG", {60, 40}, 1}, {"b.JPG", {60, 40}, 6}, {"c.JPG", {60, 40}, 8},
                          {"d.JPG", {40, 60}, 1}, {"e.JPG", {40, 60}, 3}, {"f.JPG", {48, 48}, 6}};
    int second = 0;
    for (const Case& c : cases) {
        ExifTags shot = cameraShot(at(second++));
        shot.insert(QStringLiteral("Exif.Image.Orientation"), QString::number(c.orientation));
        testing::writeShot(folder, QString::fromUtf8(c.name), shot, c.size);
    }
    const ShootingReport report = reportOf(folder.path());
    EXPECT_EQ(report.landscape, 1);
    EXPECT_EQ(report.portrait, 4);
    EXPECT_EQ(report.square, 1);
    EXPECT_EQ(report.orientationUnknown, 0);
    EXPECT_FALSE(report.hasRatings); // and says so when no file carries a rating
    EXPECT_EQ(report.rated, 0);
}

TEST(ShootingReport, GearAndExposureSettings)
{
    testing::TempFolder folder;
    const char* const keys[] = {
        "LensModel",       "LensSerialNumber", "FocalLength",  "FocalLengthIn35mmFilm",
        "ISOSpeedRatings", "FNumber",          "ExposureTime", "Flash"};
    const std::array<const char*, 8> shots[] = {
        {"RF24-70mm F2.8 L IS USM", "L1", "24/1", "24", "100", "28/10", "1/250", "0"},
        {"RF24-70mm F2.8 L IS USM", "L1", "70/1", "70", "400", "28/10", "1/250", "1"},
        {"RF24-70mm F2.8 L IS USM", "L1", "70/1", "70", "400", "4/1", "1/60", "16"},
        {"RF85mm F1.2 L USM", "L2", "85/1", "85", "1600", "12/10", "2/1", "25"},
    };
    int second = 0;
    for (const auto& values : shots) {
        ExifTags shot = cameraShot(at(second++ * 5));
        for (size_t i = 0; i < values.size(); ++i)
            shot.insert(QStringLiteral("Exif.Photo.") + QLatin1String(keys[i]), QString::fromUtf8(values[i]));
        testing::writeShot(folder, QStringLiteral("G_%1.JPG").arg(second), shot);
    }
    const ShootingReport report = reportOf(folder.path());
    auto labels = [](const QList<CountedValue>& values) {
        QStringList out;
        for (const CountedValue& v : values)
            out << QStringLiteral("%1=%2").arg(v.label).arg(v.count);
        return out.join(u',');
    };
    EXPECT_EQ(labels(report.focalLengths), QStringLiteral("24 mm=1,70 mm=2,85 mm=1"));
    EXPECT_TRUE(report.focalLengthsAre35mm);
    EXPECT_EQ(labels(report.isos), QStringLiteral("ISO 100=1,ISO 400=2,ISO 1600=1"));
    EXPECT_EQ(labels(report.apertures), QStringLiteral("f/1.2=1,f/2.8=2,f/4=1"));
    EXPECT_EQ(labels(report.shutterSpeeds), QStringLiteral("1/250 s=2,1/60 s=1,2 s=1"));
    EXPECT_EQ(report.flashFired, 2);
    EXPECT_EQ(report.flashNotFired, 2);
    ASSERT_EQ(report.lenses.size(), 2);
    EXPECT_EQ(report.lenses.first().name, QStringLiteral("RF24-70mm F2.8 L IS USM"));
    EXPECT_EQ(report.lenses.first().serial, QStringLiteral("L1"));
    EXPECT_EQ(report.lenses.first().exposures, 3);
    ASSERT_EQ(report.cameras.size(), 1);
    EXPECT_EQ(report.cameras.first().name, QStringLiteral("Canon EOS R5"));
    EXPECT_EQ(report.cameras.first().serial, QStringLiteral("012345"));
}

TEST(ShootingReport, CullingCountsExposuresByColourAndRating)
{
    testing::TempFolder folder;
    MapTags tags;
    // A pair tagged on its RAW only, a pair tagged red on both (one exposure), a
    // JPEG with 4 stars in its XMP, a RAW whose sidecar gives 2 stars over the
    // file's own 5, and an untagged, unrated frame.
    const ExifTags a = cameraShot(at(1), QStringLiteral("0"), 1);
    testing::writeShot(folder, QStringLiteral("A.JPG"), a);
    tags.setTags(testing::writeShot(folder, QStringLiteral("A.CR2"), a), {QStringLiteral("green")}, nullptr);
    const ExifTags b = cameraShot(at(2), QStringLiteral("0"), 2);
    tags.setTags(testing::writeShot(folder, QStringLiteral("B.JPG"), b), {QStringLiteral("red")}, nullptr);
    tags.setTags(testing::writeShot(folder, QStringLiteral("B.CR2"), b),
                 {QStringLiteral("red"), QStringLiteral("work")}, nullptr);
    ExifTags c = cameraShot(at(3), QStringLiteral("0"), 3);
    c.insert(QStringLiteral("Xmp.xmp.Rating"), QStringLiteral("4"));
    testing::writeShot(folder, QStringLiteral("C.JPG"), c);
    ExifTags d = cameraShot(at(4), QStringLiteral("0"), 4);
    d.insert(QStringLiteral("Xmp.xmp.Rating"), QStringLiteral("5"));
    testing::writeShot(folder, QStringLiteral("D.NEF"), d);
    folder.write(QStringLiteral("D.xmp"),
                 QByteArrayLiteral("<?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?><x:xmpmeta "
                                   "xmlns:x='adobe:ns:meta/'>"
                                   "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
                                   "<rdf:Description rdf:about='' "
                                   "xmlns:xmp='http://ns.adobe.com/xap/1.0/' xmp:Rating='2'/>"
                                   "</rdf:RDF></x:xmpmeta><?xpacket end='w'?>"));
    testing::writeShot(folder, QStringLiteral("E.JPG"), cameraShot(at(5), QStringLiteral("0"), 5));

    const ShootingReport report = reportOf(folder.path(), false, tags);
    EXPECT_EQ(report.exposures, 5);
    EXPECT_EQ(report.kept, 5);
    EXPECT_EQ(report.tagged, 2);
    EXPECT_EQ(report.taggedByColour.value(QStringLiteral("green")), 1);
    EXPECT_EQ(report.taggedByColour.value(QStringLiteral("red")), 1);
    EXPECT_TRUE(report.hasRatings);
    EXPECT_EQ(report.rated, 2);
    EXPECT_EQ(report.ratings.value(4), 1);
    EXPECT_EQ(report.ratings.value(2), 1);
    EXPECT_EQ(report.ratings.value(5), 0);
}

} // namespace
} // namespace lumaro::report
