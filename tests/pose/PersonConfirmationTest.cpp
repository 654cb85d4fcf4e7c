// SPDX-License-Identifier: GPL-3.0-or-later
// A weak sighting counts only with a face on its head or the object detector's person over it; a sure one
// stands alone. Faces go to the person whose head they lie on, and their place is read against the thirds.
#include "pose/PersonConfirmation.h"
#include "pose/FaceFraming.h"

#include "tests/pose/JointBuilder.h"

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

using testing::joints;

// A standing person in the box x 0.4–0.6, y 0.1–0.9 (y upward), head near the top.
platform::DetectedPerson standing(float score, double headX = 0.5, double left = 0.4)
{
    platform::DetectedPerson person;
    person.score = score;
    person.box = QRectF(left, 0.1, 0.2, 0.8);
    person.joints =
        joints({{"nose", headX, 0.82}, {"left_eye", headX + 0.01, 0.84}, {"left_upLeg", left + 0.12, 0.5}});
    return person;
}

struct ConfirmCase
{
    const char* label;
    float score;
    std::vector<QRectF> faces;
    std::vector<QRectF> objectPeople;
    std::optional<PersonEvidence> expected;
};

class WeakSighting : public ::testing::TestWithParam<ConfirmCase>
{
};

TEST_P(WeakSighting, CountsOnlyWithEvidence)
{
    const ConfirmCase& row = GetParam();
    EXPECT_EQ(PersonConfirmation::confirm(standing(row.score), row.faces, row.objectPeople), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Evidence, WeakSighting,
    ::testing::Values(
        ConfirmCase{"sure_alone", 0.3f, {}, {}, PersonEvidence::sighting},
        ConfirmCase{"weak_alone", 0.27f, {}, {}, std::nullopt},
        ConfirmCase{"weak_face_on_head", 0.22f, {QRectF(0.47, 0.78, 0.06, 0.08)}, {}, PersonEvidence::face},
        // A face inside the box but at the belly is another person's (a child held), not this one's head.
        ConfirmCase{"weak_face_off_head", 0.22f, {QRectF(0.47, 0.45, 0.06, 0.08)}, {}, std::nullopt},
        ConfirmCase{"weak_face_elsewhere", 0.22f, {QRectF(0.05, 0.78, 0.06, 0.08)}, {}, std::nullopt},
        ConfirmCase{
            "weak_object_over_it", 0.2f, {}, {QRectF(0.38, 0.05, 0.25, 0.9)}, PersonEvidence::objectDetector},
        // The object detector's person beside the sighting (the rider next to a horse's head) is no evidence.
        ConfirmCase{"weak_object_beside", 0.2f, {}, {QRectF(0.55, 0.1, 0.3, 0.8)}, std::nullopt}),
    [](const auto& info) { return std::string(info.param.label); });

struct ThirdsCase
{
    const char* label;
    QRectF face; // y upward
    int column;
    int row;
    const char* powerPoint;
    bool onPowerPoint;
};

class FaceOnThirds : public ::testing::TestWithParam<ThirdsCase>
{
};

TEST_P(FaceOnThirds, NamesItsThirdAndNearestCrossing)
{
    const ThirdsCase& row = GetParam();
    const FaceFacts facts = FaceFraming::describe(row.face, 0.9f);
    EXPECT_EQ(facts.column, row.column);
    EXPECT_EQ(facts.row, row.row);
    EXPECT_EQ(facts.powerPoint, QString::fromLatin1(row.powerPoint));
    EXPECT_EQ(facts.onPowerPoint, row.onPowerPoint);
    EXPECT_NEAR(facts.sizeShare, row.face.width() * row.face.height(), 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Thirds, FaceOnThirds,
    ::testing::Values(
        // Centre (0.33, 0.67 from the bottom) = on the upper-left crossing.
        ThirdsCase{"upper_left_crossing", QRectF(0.28, 0.62, 0.1, 0.1), 0, 0, "upperLeft", true},
        ThirdsCase{"dead_centre", QRectF(0.45, 0.45, 0.1, 0.1), 1, 1, "lowerRight", false},
        ThirdsCase{"top_right_corner", QRectF(0.85, 0.85, 0.1, 0.1), 2, 0, "upperRight", false},
        ThirdsCase{"near_lower_right", QRectF(0.62, 0.25, 0.1, 0.1), 2, 2, "lowerRight", true}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(FaceMatching, EachFaceGoesToTheHeadItLiesOn)
{
    // Two people side by side whose boxes overlap; a third face belongs to nobody found.
    const std::vector<platform::DetectedPerson> people{standing(0.6f, 0.45, 0.35), standing(0.6f, 0.6, 0.5)};
    const std::vector<std::pair<QRectF, float>> faces{{QRectF(0.57, 0.78, 0.06, 0.08), 0.9f},
                                                      {QRectF(0.90, 0.78, 0.06, 0.08), 0.95f},
                                                      {QRectF(0.42, 0.78, 0.06, 0.08), 0.8f}};
    EXPECT_EQ(FaceFraming::match(people, faces), (std::vector<int>{2, 0}));
}

} // namespace
} // namespace lumaro::pose
