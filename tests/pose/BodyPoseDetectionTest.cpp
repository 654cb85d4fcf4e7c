// SPDX-License-Identifier: GPL-3.0-or-later
// Every person in real photos, found without a face: how many, where their joints land, and that each gets a
// verdict; animals, objects and pages give nobody.
#include "platform/pose/MultiPoseBodyPoseDetector.h"
#include "platform/vision/CenterNetObjectDetector.h"
#include "platform/vision/OpenCvFaceDetector.h"
#include "pose/PicturePoseAnalyzer.h"

#include "tests/support/TempFolder.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

QString photoPath(const QString& models, const char* name)
{
    const QString file = QString::fromLatin1(name);
    if (file.startsWith(QStringLiteral("data/")))
        return QStringLiteral(LUMARO_TEST_DATA_DIR "/pose/") + file.mid(5);
    return models + QStringLiteral("/test-images/") + file;
}

class PeopleInPhotos : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_models = testing::sharedModelsDir();
        if (m_models.isEmpty())
            GTEST_SKIP() << "../shared/models is not there; finding people needs its MultiPose file";
        QString error;
        PoseBackends backends;
        backends.body = platform::MultiPoseBodyPoseDetector::loadFrom(
            m_models + QStringLiteral("/pose/movenet_multipose_lightning_256.onnx"), &error);
        ASSERT_TRUE(backends.body) << error.toStdString();
        backends.faces = platform::OpenCvFaceDetector::fromYuNet(
            m_models + QStringLiteral("/face/face_detection_yunet_2022mar.onnx"));
        backends.objects = platform::CenterNetObjectDetector::load(
            m_models + QStringLiteral("/detect/centernet_mbv3_coco_512.onnx"),
            m_models + QStringLiteral("/detect/coco80_labels.txt"),
            PicturePoseAnalyzer::kConfirmingObjectScore);
        ASSERT_TRUE(backends.faces && backends.objects);
        m_analyzer = std::make_unique<PicturePoseAnalyzer>(std::move(backends));
    }

    PicturePoseAnalysis analyse(const QString& path)
    {
        auto outcome = m_analyzer->analyse(path, std::optional<QStringList>());
        const auto* failure = std::get_if<PicturePoseFailure>(&outcome);
        EXPECT_FALSE(failure) << (failure ? failure->message.toStdString() : std::string());
        return failure ? PicturePoseAnalysis{} : std::get<PicturePoseAnalysis>(std::move(outcome));
    }

    QString m_models;
    std::unique_ptr<PicturePoseAnalyzer> m_analyzer;
};

struct PhotoCase
{
    const char* photo;
    int people;
    const char* firstLevel1; // the surest person's level-1 verdict, or nullptr
    const char* shotSize;    // the picture's, or nullptr
};

class PeopleCount : public PeopleInPhotos, public ::testing::WithParamInterface<PhotoCase>
{
};

TEST_P(PeopleCount, FindsEveryPersonAndNobodyElse)
{
    const PhotoCase& row = GetParam();
    const PicturePoseAnalysis analysis = analyse(photoPath(m_models, row.photo));
    ASSERT_EQ(int(analysis.people.size()), row.people) << row.photo;
    if (row.firstLevel1)
        EXPECT_EQ(rawValue(analysis.people.front().pose.level1.pose), QString::fromLatin1(row.firstLevel1));
    EXPECT_EQ(analysis.shotSize ? rawValue(*analysis.shotSize) : QString(),
              QString::fromLatin1(row.shotSize));
}

INSTANTIATE_TEST_SUITE_P(
    Photos, PeopleCount,
    ::testing::Values(
        PhotoCase{"data/person.jpg", 1, "POSE_STAND", "full"}, // from behind: no face at all
        PhotoCase{"data/kite.jpg", 2, "POSE_STAND", "long"},   // two small walkers
        PhotoCase{"basketball1.png", 2, "POSE_STAND", "full"}, // the second half out of the frame
        PhotoCase{"messi5.jpg", 1, "POSE_STAND", "full"},
        PhotoCase{"astronaut.png", 1, "POSE_DIVERSE", "closeUp"},
        // The pose network's weak "person" on a zebra's head, and a pencil drawing of a man.
        PhotoCase{"data/giraffe.jpg", 0, nullptr, nullptr},
        PhotoCase{"data/drawing_dave.png", 0, nullptr, nullptr}, PhotoCase{"horses.jpg", 0, nullptr, nullptr},
        PhotoCase{"dog.jpg", 0, nullptr, nullptr}, PhotoCase{"eagle.jpg", 0, nullptr, nullptr},
        PhotoCase{"chelsea.png", 0, nullptr, nullptr}, PhotoCase{"coffee.png", 0, nullptr, nullptr},
        PhotoCase{"building.jpg", 0, nullptr, nullptr}, PhotoCase{"imageTextN.png", 0, nullptr, nullptr}),
    [](const auto& info) {
        return QString::fromLatin1(info.param.photo).section(u'/', -1).section(u'.', 0, 0).toStdString();
    });

TEST_F(PeopleInPhotos, AGroupOfTwelveGivesTwelveVerdicts)
{
    // More people than the network names in one look: the tiles must find the rest, and a player seen in two
    // overlapping tiles must stay one person.
    const QImage player = QImage(photoPath(m_models, "basketball1.png")).copy(28, 72, 140, 408);
    QImage group(1200, 900, QImage::Format_RGB888);
    group.fill(QColor(0x7a, 0x8a, 0x70));
    {
        QPainter painter(&group);
        for (int i = 0; i < 12; ++i)
            painter.drawImage(20 + (i % 6) * 200, 20 + (i / 6) * 450 + (i % 3) * 10, player);
    }
    testing::TempFolder folder;
    const QString path = folder.filePath(QStringLiteral("group.jpg"));
    ASSERT_TRUE(group.save(path));
    const PicturePoseAnalysis analysis = analyse(path);
    ASSERT_EQ(analysis.people.size(), 12u);
    for (const AnalysedPerson& person : analysis.people)
        EXPECT_EQ(person.pose.level1.pose, PoseValueLevel1Pose::stand);
}

TEST_F(PeopleInPhotos, JointsOutOfTheFrameHaveNoLocation)
{
    const PicturePoseAnalysis analysis = analyse(photoPath(m_models, "astronaut.png"));
    ASSERT_EQ(analysis.people.size(), 1u);
    const platform::JointDictionary& joints = analysis.people[0].pose.joints;
    for (const char* key : {"left_leg", "right_leg", "left_foot", "right_foot"})
        EXPECT_FALSE(joints.value(QString::fromLatin1(key)).location.has_value()) << key;
    for (const char* key : {"left_eye", "right_eye", "left_shoulder", "right_shoulder"})
        EXPECT_TRUE(joints.value(QString::fromLatin1(key)).location.has_value()) << key;
}

TEST_F(PeopleInPhotos, TheFootballerFacingUsKeepsHisLeftOnThePicturesRight)
{
    const PicturePoseAnalysis analysis = analyse(photoPath(m_models, "messi5.jpg"));
    ASSERT_EQ(analysis.people.size(), 1u);
    const platform::JointDictionary& joints = analysis.people[0].pose.joints;
    const auto left = joints.value(QStringLiteral("left_shoulder")).location;
    const auto right = joints.value(QStringLiteral("right_shoulder")).location;
    ASSERT_TRUE(left && right);
    EXPECT_GT(left->x(), right->x());
    EXPECT_GT(joints.value(QStringLiteral("left_eye")).location->y(),
              joints.value(QStringLiteral("left_foot")).location->y())
        << "y grows upward";
}

TEST(BodyPoseDetectorLoading, AMissingOrBrokenModelSaysWhatIsWrong)
{
    qputenv("LUMARO_MODELS_DIR", QByteArrayLiteral("/nonexistent-lumaro-models"));
    QString error;
    EXPECT_FALSE(platform::MultiPoseBodyPoseDetector::load(&error));
    qunsetenv("LUMARO_MODELS_DIR");
    EXPECT_TRUE(error.contains(QStringLiteral("movenet_multipose_lightning_256.onnx")))
        << error.toStdString();

    testing::TempFolder folder;
    const QString bogus =
        folder.write(QStringLiteral("pose/movenet_multipose_lightning_256.onnx"), "not a network");
    error.clear();
    EXPECT_FALSE(platform::MultiPoseBodyPoseDetector::loadFrom(bogus, &error));
    EXPECT_TRUE(error.contains(bogus)) << error.toStdString();
}

} // namespace
} // namespace lumaro::pose
