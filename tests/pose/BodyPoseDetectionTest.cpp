// SPDX-License-Identifier: GPL-3.0-or-later
// Body-pose detection on real photos: the people are found, their joints land on them, a standing man stands.
#include "platform/MoveNetBodyPoseDetector.h"
#include "platform/vision/OpenCvFaceDetector.h"
#include "pose/PersonPoseEstimator.h"

#include "tests/support/TempFolder.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

class BodyPoseDetection : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_models = testing::sharedModelsDir();
        if (m_models.isEmpty())
            GTEST_SKIP() << "../shared/models is not there; detection on real photos needs its MoveNet and YuNet files";
        QString error;
        m_detector = platform::MoveNetBodyPoseDetector::loadFrom(
            m_models + QStringLiteral("/pose/movenet_singlepose_lightning_v4.onnx"),
            platform::OpenCvFaceDetector::fromYuNet(m_models + QStringLiteral("/face/face_detection_yunet_2022mar.onnx")),
            &error);
        ASSERT_TRUE(m_detector) << error.toStdString();
    }

    std::vector<platform::DetectedPerson> peopleIn(const char* photo, QSize* size = nullptr)
    {
        const QImage image(m_models + QStringLiteral("/test-images/") + QString::fromLatin1(photo));
        EXPECT_FALSE(image.isNull()) << photo;
        if (size)
            *size = image.size();
        const auto detection = m_detector->detect(image);
        EXPECT_TRUE(detection.has_value()) << photo;
        return detection ? detection->people : std::vector<platform::DetectedPerson>{};
    }

    QString m_models;
    std::unique_ptr<platform::MoveNetBodyPoseDetector> m_detector;
};

// Every located joint of `person` inside `box` (picture pixels, y downward, as one reads it off the photo).
void expectJointsInside(const platform::DetectedPerson& person, QSize size, const QRectF& box, int minimumLocated)
{
    int located = 0;
    for (const platform::JointSample& joint : person.joints) {
        if (!joint.location)
            continue;
        ++located;
        const QPointF pixel(joint.location->x() * size.width(), (1.0 - joint.location->y()) * size.height());
        EXPECT_TRUE(box.contains(pixel)) << joint.name.toStdString() << " at " << pixel.x() << "," << pixel.y();
    }
    EXPECT_GE(located, minimumLocated);
}

TEST_F(BodyPoseDetection, TheStandingPlayerStandsAndHisJointsAreOnHim)
{
    QSize size;
    const auto people = peopleIn("basketball1.png", &size);
    ASSERT_EQ(people.size(), 1u) << "the frontal face opens one region; the profile face is not found";
    // The man on the left, from his hair to his shoes.
    expectJointsInside(people[0], size, QRectF(QPointF(30, 75), QPointF(165, 480)), 13);
    const PersonPose pose = PersonPoseEstimator().evaluate(people[0].joints, std::nullopt);
    EXPECT_EQ(pose.level1.pose, PoseValueLevel1Pose::stand);
}

TEST_F(BodyPoseDetection, TheKickingFootballerIsFoundWholeWithHisLeftAndRightKept)
{
    QSize size;
    const auto people = peopleIn("messi5.jpg", &size);
    ASSERT_EQ(people.size(), 1u);
    const platform::JointDictionary& joints = people[0].joints;
    expectJointsInside(people[0], size, QRectF(QPointF(60, 55), QPointF(465, 342)), 17);
    // He faces the camera, so his left shoulder is on the picture's right; y grows upward.
    ASSERT_TRUE(joints.value(QStringLiteral("left_shoulder")).location && joints.value(QStringLiteral("right_shoulder")).location);
    EXPECT_GT(joints.value(QStringLiteral("left_shoulder")).location->x(),
              joints.value(QStringLiteral("right_shoulder")).location->x());
    EXPECT_GT(joints.value(QStringLiteral("left_eye")).location->y(), joints.value(QStringLiteral("left_foot")).location->y());
}

TEST_F(BodyPoseDetection, JointsOutOfTheFrameHaveNoLocation)
{
    QSize size;
    const auto people = peopleIn("astronaut.png", &size);
    ASSERT_EQ(people.size(), 1u);
    const platform::JointDictionary& joints = people[0].joints;
    for (const char* key : {"left_leg", "right_leg", "left_foot", "right_foot"}) {
        ASSERT_TRUE(joints.contains(QString::fromLatin1(key))) << key;
        EXPECT_FALSE(joints.value(QString::fromLatin1(key)).location.has_value()) << key;
    }
    for (const char* key : {"left_eye", "right_eye", "left_shoulder", "right_shoulder"})
        EXPECT_TRUE(joints.value(QString::fromLatin1(key)).location.has_value()) << key;
    const PersonPose pose = PersonPoseEstimator().evaluate(joints, std::nullopt);
    EXPECT_EQ(pose.level1.pose, PoseValueLevel1Pose::diverse);
}

TEST_F(BodyPoseDetection, EachFaceOpensItsOwnPerson)
{
    // Two real photos side by side. Messi's spectators have faces too, and a region around one of them shows
    // MoveNet Messi again: that second sighting must not become a second person.
    const QImage left(m_models + QStringLiteral("/test-images/messi5.jpg"));
    const QImage right(m_models + QStringLiteral("/test-images/astronaut.png"));
    QImage both(left.width() + right.width(), std::max(left.height(), right.height()), QImage::Format_RGB888);
    both.fill(Qt::black);
    {
        QPainter painter(&both);
        painter.drawImage(0, 0, left);
        painter.drawImage(left.width(), 0, right);
    }
    const auto detection = m_detector->detect(both);
    ASSERT_TRUE(detection.has_value());
    ASSERT_EQ(detection->people.size(), 2u);
    const double border = double(left.width()) / both.width();
    int onLeft = 0;
    for (const platform::DetectedPerson& person : detection->people) {
        const bool leftPerson = person.searchRegion.center().x() < border;
        onLeft += leftPerson ? 1 : 0;
        for (const platform::JointSample& joint : person.joints) {
            if (joint.location) {
                EXPECT_EQ(joint.location->x() < border, leftPerson) << joint.name.toStdString();
            }
        }
    }
    EXPECT_EQ(onLeft, 1);
}

class NobodyThere : public BodyPoseDetection, public ::testing::WithParamInterface<const char*>
{
};

TEST_P(NobodyThere, FindsNoPerson)
{
    EXPECT_TRUE(peopleIn(GetParam()).empty()) << GetParam();
}

INSTANTIATE_TEST_SUITE_P(Photos, NobodyThere,
                         ::testing::Values("horses.jpg", "dog.jpg", "eagle.jpg", "chelsea.png", "coffee.png",
                                           "building.jpg"),
                         [](const auto& info) { return QString::fromLatin1(info.param).section(u'.', 0, 0).toStdString(); });

TEST(BodyPoseDetectorLoading, AMissingModelSaysWhatIsMissing)
{
    qputenv("LUMARO_MODELS_DIR", QByteArrayLiteral("/nonexistent-lumaro-models"));
    QString error;
    const auto detector = platform::MoveNetBodyPoseDetector::load(&error);
    qunsetenv("LUMARO_MODELS_DIR");
    EXPECT_FALSE(detector);
    EXPECT_TRUE(error.contains(QStringLiteral("movenet_singlepose_lightning_v4.onnx"))) << error.toStdString();
}

TEST(BodyPoseDetectorLoading, AFileThatIsNoModelFailsCleanly)
{
    testing::TempFolder folder;
    const QString bogus = folder.write(QStringLiteral("pose/movenet_singlepose_lightning_v4.onnx"), "not a network");
    QString error;
    EXPECT_FALSE(platform::MoveNetBodyPoseDetector::loadFrom(bogus, nullptr, &error));
    EXPECT_FALSE(error.isEmpty());
}

} // namespace
} // namespace lumaro::pose
