// SPDX-License-Identifier: GPL-3.0-or-later
// Level-1 pose naming from the thighs: relation outranks confidence, confidence breaks ties, missing thighs.
#include "pose/PoseValueLevel1Estimator.h"

#include "tests/pose/JointBuilder.h"

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

using testing::joints;
using Side = PoseBodySide;

struct Level1Case
{
    const char* label;
    platform::JointDictionary joints;
    PoseValueLevel1Pose pose;
    std::optional<Side> side;
    std::size_t evaluations;
    const char* reason; // nullptr: no reason
};

class Level1 : public ::testing::TestWithParam<Level1Case>
{
};

TEST_P(Level1, NamesThePoseFromTheThighs)
{
    const Level1Case& c = GetParam();
    const PoseValueLevel1Result result = PoseValueLevel1Estimator().evaluate(c.joints);
    EXPECT_EQ(result.pose, c.pose);
    EXPECT_EQ(result.matchedSide, c.side);
    EXPECT_EQ(result.pairEvaluations.size(), c.evaluations);
    EXPECT_EQ(result.matchedDirection.has_value(), c.side.has_value());
    if (c.side) {
        EXPECT_EQ(result.matchedDirection->pointAName, c.side == Side::left ? "left_upLeg" : "right_upLeg");
    }
    if (c.reason) {
        EXPECT_EQ(result.reason, QString::fromUtf8(c.reason));
    } else {
        EXPECT_FALSE(result.reason.has_value());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Level1,
    ::testing::Values(
        // A horizontal left thigh of high confidence loses to a vertical right one of low confidence.
        Level1Case{"relationOutranksConfidence",
                   joints({{"left_upLeg", 0.4, 0.5, 0.99f}, {"left_leg", 0.2, 0.5, 0.99f},
                           {"right_upLeg", 0.6, 0.5, 0.3f}, {"right_leg", 0.6, 0.3, 0.3f}}),
                   PoseValueLevel1Pose::stand, Side::right, 2, nullptr},
        Level1Case{"bothVerticalHigherConfidenceWins",
                   joints({{"left_upLeg", 0.4, 0.5, 0.5f}, {"left_leg", 0.4, 0.3, 0.5f},
                           {"right_upLeg", 0.6, 0.5, 0.9f}, {"right_leg", 0.6, 0.3, 0.8f}}),
                   PoseValueLevel1Pose::stand, Side::right, 2, nullptr},
        Level1Case{"fullTieKeepsLeft",
                   joints({{"left_upLeg", 0.4, 0.5}, {"left_leg", 0.4, 0.3}, {"right_upLeg", 0.6, 0.5},
                           {"right_leg", 0.6, 0.3}}),
                   PoseValueLevel1Pose::stand, Side::left, 2, nullptr},
        Level1Case{"onlyOnePair", joints({{"right_upLeg", 0.6, 0.5}, {"right_leg", 0.6, 0.3}}),
                   PoseValueLevel1Pose::stand, Side::right, 1, nullptr},
        Level1Case{"bothHorizontalIsSit",
                   joints({{"left_upLeg", 0.4, 0.5}, {"left_leg", 0.2, 0.49}, {"right_upLeg", 0.6, 0.5},
                           {"right_leg", 0.8, 0.51}}),
                   PoseValueLevel1Pose::sit, Side::left, 2, nullptr},
        // A horizontal thigh ranks before a rising one even at lower confidence.
        Level1Case{"horizontalBeforeRising",
                   joints({{"left_upLeg", 0.4, 0.5, 0.9f}, {"left_leg", 0.4, 0.7, 0.9f},
                           {"right_upLeg", 0.6, 0.5, 0.2f}, {"right_leg", 0.9, 0.5, 0.2f}}),
                   PoseValueLevel1Pose::sit, Side::right, 2, nullptr},
        Level1Case{"noThighs", joints({{"left_eye", 0.4, 0.9}, {"left_upLeg", 0.4, 0.5}}),
                   PoseValueLevel1Pose::diverse, std::nullopt, 0, "缺少 Hip / Knee 成对坐标"},
        Level1Case{"thighsWithoutLocations",
                   joints({{"left_upLeg", 0, 0, 0.1f, false}, {"left_leg", 0.4, 0.3},
                           {"right_upLeg", 0.6, 0.5}, {"right_leg", 0.6, 0.5}}),
                   PoseValueLevel1Pose::diverse, std::nullopt, 0, "Hip / Knee 坐标缺失（无有效矢量）"},
        // One side without a location drops out; the other still decides.
        Level1Case{"oneSideUnlocated",
                   joints({{"left_upLeg", 0, 0, 0.1f, false}, {"left_leg", 0.4, 0.3},
                           {"right_upLeg", 0.6, 0.5}, {"right_leg", 0.9, 0.5}}),
                   PoseValueLevel1Pose::sit, Side::right, 1, nullptr}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(Level1, KeepsEverySideThatYieldedARelation)
{
    const auto result = PoseValueLevel1Estimator().evaluate(joints(
        {{"left_upLeg", 0.4, 0.5}, {"left_leg", 0.4, 0.3}, {"right_upLeg", 0.6, 0.5}, {"right_leg", 0.7, 0.8}}));
    ASSERT_EQ(result.pairEvaluations.size(), 2u);
    EXPECT_EQ(result.pairEvaluations.at(Side::left).relation, ConditionDirectionRelation::r1Vertical);
    EXPECT_EQ(result.pairEvaluations.at(Side::right).relation, ConditionDirectionRelation::r3Upward);
    EXPECT_EQ(rawValue(result.pose), QStringLiteral("POSE_STAND"));
}

} // namespace
} // namespace lumaro::pose
