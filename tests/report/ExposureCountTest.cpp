// SPDX-License-Identifier: GPL-3.0-or-later
// Effective shutter count: exposures, not files. A JPEG and a RAW of one shot
// count once; shots of one instant stay apart.
#include "tests/report/ShootPictures.h"
#include "tests/report/ShootReport.h"

#include <gtest/gtest.h>

namespace lumaro::report {
namespace {

using testing::cameraShot;
using testing::ExifTags;
using testing::MapTags;

struct ShotSpec
{
    const char* name;
    const char* time; // empty: no capture time
    const char* subSeconds;
    int imageNumber;
    const char* model = "Canon EOS R5";
};

struct CountCase
{
    const char* rule;
    bool deep;
    int files;
    int exposures;
    int paired;
    std::vector<ShotSpec> shots;
};

class ExposureCount : public ::testing::TestWithParam<CountCase>
{
};

TEST_P(ExposureCount, CountsEachShotOnce)
{
    const CountCase& c = GetParam();
    testing::TempFolder folder;
    for (const ShotSpec& shot : c.shots) {
        ExifTags tags =
            cameraShot(QString::fromUtf8(shot.time), QString::fromUtf8(shot.subSeconds), shot.imageNumber);
        tags.insert(QStringLiteral("Exif.Image.Model"), QString::fromUtf8(shot.model));
        if (QByteArray(shot.time).isEmpty())
            tags.remove(QStringLiteral("Exif.Photo.DateTimeOriginal"));
        testing::writeShot(folder, QString::fromUtf8(shot.name), tags);
    }
    const ShootingReport report = testing::reportOf(folder.path(), c.deep);
    EXPECT_EQ(report.files, c.files) << c.rule;
    EXPECT_EQ(report.exposures, c.exposures) << c.rule;
    EXPECT_EQ(report.pairedExposures, c.paired) << c.rule;
}

const char* t0 = "2024:05:01 10:00:00";
const char* t1 = "2024:05:01 10:00:01";

// One rule a row.
// clang-format off
INSTANTIATE_TEST_SUITE_P(
    Rules, ExposureCount,
    ::testing::Values(
        CountCase{"JPEG + RAW of one shot count once", false, 4, 2, 2,
                  {{"IMG_1.JPG", t0, "10", 1}, {"IMG_1.CR2", t0, "10", 1}, {"IMG_2.JPG", t1, "10", 2},
                   {"IMG_2.CR2", t1, "10", 2}}},
        CountCase{"one instant, two running numbers: two shots (a burst without sub-seconds)", false, 4, 2, 2,
                  {{"A.JPG", t0, "", 7}, {"A.NEF", t0, "", 7}, {"B.JPG", t0, "", 8}, {"B.NEF", t0, "", 8}}},
        CountCase{"one second, different sub-seconds: two shots", false, 4, 2, 2,
                  {{"A.JPG", t0, "10", 0}, {"A.ARW", t0, "10", 0}, {"B.JPG", t0, "30", 0},
                   {"B.ARW", t0, "30", 0}}},
        CountCase{"same instant, no numbers, two JPEGs: two shots paired with the RAWs in name order",
                  false, 4, 2, 2,
                  {{"A.JPG", t0, "", 0}, {"A.RAF", t0, "", 0}, {"B.JPG", t0, "", 0}, {"B.RAF", t0, "", 0}}},
        CountCase{"JPG and RAW folders of one card pair across folders in a tree walk", true, 3, 2, 1,
                  {{"JPG/IMG_1.JPG", t0, "50", 11}, {"RAW/IMG_1.CR3", t0, "50", 11},
                   {"JPG/IMG_2.JPG", t1, "50", 12}}},
        CountCase{"without --deep the sub-folders are not read", false, 1, 1, 0,
                  {{"top.JPG", t0, "50", 1}, {"JPG/IMG_1.JPG", t1, "50", 2}}},
        CountCase{"two cameras at the same instant: two shots", false, 2, 2, 0,
                  {{"A.JPG", t0, "10", 5}, {"B.JPG", t0, "10", 5, "Canon EOS R6"}}},
        CountCase{"no capture time: pairs by name stem", false, 3, 2, 1,
                  {{"scan_1.JPG", "", "", 0}, {"scan_1.DNG", "", "", 0}, {"scan_2.JPG", "", "", 0}}},
        CountCase{"the same running number but another sub-second is another shot", false, 2, 2, 0,
                  {{"A.JPG", t0, "10", 3}, {"A.ORF", t0, "60", 3}}}));
// clang-format on

TEST(ShootScanner, CountsAnUnreadablePictureAndGoesOn)
{
    testing::TempFolder folder;
    testing::writeShot(folder, QStringLiteral("good.JPG"), cameraShot(QString::fromUtf8(t0)));
    folder.write(QStringLiteral("broken.JPG"), QByteArrayLiteral("not a picture"));
    MapTags tags;
    const auto scan = ShootScanner(tags).scan(folder.path(), false, nullptr, {});
    ASSERT_TRUE(scan);
    EXPECT_EQ(scan->files.size(), 1);
    ASSERT_EQ(scan->failures.size(), 1);
    EXPECT_TRUE(scan->failures.first().contains(QStringLiteral("broken.JPG")));
}

TEST(ShootScanner, CancelledRunGivesNothingAndSaysSo)
{
    testing::TempFolder folder;
    for (int i = 0; i < 20; ++i)
        testing::writeShot(folder, QStringLiteral("IMG_%1.JPG").arg(i),
                           cameraShot(QString::fromUtf8(t0), {}, i + 1));
    MapTags tags;
    std::atomic_bool cancel{false};
    qsizetype calls = 0;
    const auto scan =
        ShootScanner(tags).scan(folder.path(), false, &cancel, [&](qsizetype done, qsizetype total) {
            EXPECT_EQ(total, 20);
            ++calls;
            if (done >= 3)
                cancel = true;
        });
    ASSERT_TRUE(scan);
    EXPECT_TRUE(scan->cancelled);
    EXPECT_TRUE(scan->files.isEmpty());
    EXPECT_GE(calls, 1);
}

TEST(ShootScanner, AFolderThatCannotBeListedIsAnError)
{
    MapTags tags;
    QString error;
    EXPECT_FALSE(ShootScanner(tags).scan(QStringLiteral("/nonexistent/shoot"), false, nullptr, {}, &error));
    EXPECT_FALSE(error.isEmpty());
}

} // namespace
} // namespace lumaro::report
