// SPDX-License-Identifier: GPL-3.0-or-later
// Joint repair: left and right exchanged across the body are put back, joints off the picture or off the
// person lose their location, and a body that is merely turned or crossing its legs is left alone.
#include "pose/SkeletonRepairer.h"

#include "tests/pose/JointBuilder.h"

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

using testing::joints;

// A person facing the camera, y upward: their left side on the picture's right.
platform::JointDictionary facingUs(double leftKneeX, double rightKneeX, double leftAnkleX = 0.56,
                                   double rightAnkleX = 0.44)
{
    return joints({{"left_shoulder", 0.58, 0.80},
                   {"right_shoulder", 0.42, 0.80},
                   {"left_upLeg", 0.55, 0.50},
                   {"right_upLeg", 0.45, 0.50},
                   {"left_leg", leftKneeX, 0.30},
                   {"right_leg", rightKneeX, 0.30},
                   {"left_foot", leftAnkleX, 0.10},
                   {"right_foot", rightAnkleX, 0.10}});
}

struct RepairCase
{
    const char* label;
    platform::JointDictionary joints;
    QStringList swapped; // keys flagged swappedSides
    double leftKneeX;    // where the left knee ends up
};

class SkeletonRepair : public ::testing::TestWithParam<RepairCase>
{
};

TEST_P(SkeletonRepair, ExchangesOnlyWhatTheLimbsShowToBeMixedUp)
{
    platform::JointDictionary skeleton = GetParam().joints;
    const JointRepairs repairs = SkeletonRepairer().repair(skeleton, QRectF(0.3, 0.0, 0.4, 0.9));
    QStringList swapped;
    for (auto it = repairs.cbegin(); it != repairs.cend(); ++it) {
        if (it.value() == JointRepair::swappedSides)
            swapped << it.key();
    }
    EXPECT_EQ(swapped, GetParam().swapped);
    EXPECT_DOUBLE_EQ(skeleton.value(QStringLiteral("left_leg")).location->x(), GetParam().leftKneeX);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SkeletonRepair,
    ::testing::Values(RepairCase{"upright", facingUs(0.56, 0.44), {}, 0.56},
                      // The two thighs form an X: the knees are exchanged, and the shanks then hang straight.
                      RepairCase{
                          "kneesMixedUp", facingUs(0.40, 0.60, 0.60, 0.40), {"left_leg", "right_leg"}, 0.60},
                      // Knees and ankles both on the wrong side: each link is put right in turn down the leg.
                      RepairCase{"legMixedUp",
                                 facingUs(0.40, 0.60, 0.40, 0.60),
                                 {"left_foot", "left_leg", "right_foot", "right_leg"},
                                 0.60},
                      // Legs crossed at the knee, as people stand: the X is too shallow to be a mix-up.
                      RepairCase{"legsCrossed", facingUs(0.49, 0.51), {}, 0.49},
                      // Seen from the side, both hips and both knees nearly in one place: nothing to tell.
                      RepairCase{"profile",
                                 joints({{"left_upLeg", 0.50, 0.50},
                                         {"right_upLeg", 0.51, 0.50},
                                         {"left_leg", 0.52, 0.30},
                                         {"right_leg", 0.50, 0.30}}),
                                 {},
                                 0.52}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(SkeletonRepairOutliers, JointsOffThePictureOrOffThePersonLoseTheirLocation)
{
    platform::JointDictionary skeleton = joints({{"nose", 0.50, 1.04},       // above the frame
                                                 {"left_hand", 0.95, 0.50},  // far right of the person
                                                 {"right_hand", 0.28, 0.50}, // just outside the box: kept
                                                 {"left_eye", 0.52, 0.85}});
    const JointRepairs repairs = SkeletonRepairer().repair(skeleton, QRectF(0.3, 0.0, 0.4, 0.9));
    EXPECT_EQ(repairs.value(QStringLiteral("nose")), JointRepair::outsideFrame);
    EXPECT_EQ(repairs.value(QStringLiteral("left_hand")), JointRepair::outsideBox);
    EXPECT_EQ(repairs.size(), 2);
    EXPECT_FALSE(skeleton.value(QStringLiteral("nose")).location);
    EXPECT_FALSE(skeleton.value(QStringLiteral("left_hand")).location);
    EXPECT_TRUE(skeleton.value(QStringLiteral("right_hand")).location);
}

} // namespace
} // namespace lumaro::pose
