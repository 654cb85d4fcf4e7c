// SPDX-License-Identifier: GPL-3.0-or-later
// Pose tiles: the person cut out with a margin and their skeleton drawn where they stand; files already in
// the folder are never replaced, by a tile or by the contact sheet.
#include "pose/PoseTileExporter.h"

#include "pose/SkeletonPainter.h"
#include "tests/pose/JointBuilder.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QImage>

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

using testing::TempFolder;

// A person standing in the right half of a 1000 × 500 picture, box x 0.6–0.7, y 0.2–0.8 (y upward).
PicturePoseAnalysis onePerson(const QString& path)
{
    AnalysedPerson person;
    person.box = QRectF(0.6, 0.2, 0.1, 0.6);
    person.score = 0.7f;
    person.shotSize = ShotSize::full;
    person.pose = PersonPoseEstimator().evaluate(testing::joints({{"left_upLeg", 0.66, 0.5},
                                                                  {"right_upLeg", 0.64, 0.5},
                                                                  {"left_leg", 0.66, 0.35},
                                                                  {"right_leg", 0.64, 0.35},
                                                                  {"left_foot", 0.66, 0.22},
                                                                  {"right_foot", 0.64, 0.22}}),
                                                 std::nullopt);
    PicturePoseAnalysis analysis;
    analysis.path = path;
    analysis.people.push_back(person);
    return analysis;
}

QImage grey()
{
    QImage picture(1000, 500, QImage::Format_RGB32);
    picture.fill(QColor(128, 128, 128));
    return picture;
}

TEST(PoseTileExporter, ATileShowsThePersonWithTheSkeletonWhereTheyStand)
{
    const PicturePoseAnalysis analysis = onePerson(QStringLiteral("/x/a.jpg"));
    const QImage tile = PoseTileExporter::renderTile(grey(), analysis.people[0], 1);
    // The box is 100 × 300 px; with its margin (45 px each side) 190 × 390, enlarged to 640 tall.
    ASSERT_EQ(tile.height() - 52, 640);
    ASSERT_GE(tile.width(), 420);
    const double scale = 640.0 / 390.0;
    const int left = (tile.width() - int(std::lround(190 * scale))) / 2;
    // The left knee, (0.66, 0.35) y upward = pixel (660, 325); the crop starts at (555, 55).
    const QPoint knee(left + int((660 - 555) * scale), int((325 - 55) * scale));
    EXPECT_EQ(tile.pixelColor(knee), SkeletonPainter::colourFor(0)) << "a joint is drawn at the knee";
    EXPECT_EQ(tile.pixelColor(left + 5, 5), QColor(128, 128, 128)) << "the picture itself around the person";
    EXPECT_TRUE(
        PoseTileExporter::caption(analysis.people[0], 1).startsWith(QStringLiteral("#1 POSE_STAND · ")));
}

TEST(PoseTileExporter, NeverReplacesAFileAlreadyThere)
{
    TempFolder folder;
    const QString mine = folder.write(QStringLiteral("a_person1.jpg"), QByteArrayLiteral("mine"));
    for (int run = 0; run < 2; ++run) {
        PoseTileExporter exporter(folder.path());
        EXPECT_EQ(exporter.addPicture(grey(), onePerson(folder.filePath(QStringLiteral("a.jpg")))), 1);
        EXPECT_TRUE(exporter.writeContactSheet());
        EXPECT_TRUE(exporter.failures().isEmpty());
    }
    QFile kept(mine);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), QByteArrayLiteral("mine"));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files, QDir::Name),
              (QStringList{QStringLiteral("a_person1.jpg"), QStringLiteral("a_person1_2.jpg"),
                           QStringLiteral("a_person1_3.jpg"), QStringLiteral("pose_contact_sheet.jpg"),
                           QStringLiteral("pose_contact_sheet_2.jpg")}));
    EXPECT_FALSE(QImage(folder.filePath(QStringLiteral("pose_contact_sheet.jpg"))).isNull());
}

TEST(PoseTileExporter, AFolderThatCannotBeWrittenIsReportedNotCrashedOn)
{
    PoseTileExporter exporter(QStringLiteral("/nonexistent-lumaro-tiles"));
    EXPECT_EQ(exporter.addPicture(grey(), onePerson(QStringLiteral("/x/a.jpg"))), 0);
    ASSERT_EQ(exporter.failures().size(), 1);
    EXPECT_TRUE(exporter.failures()[0].startsWith(QStringLiteral("a_person1.jpg: ")));
    EXPECT_FALSE(exporter.writeContactSheet());
}

} // namespace
} // namespace lumaro::pose
