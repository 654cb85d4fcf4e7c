// SPDX-License-Identifier: GPL-3.0-or-later
// The direction relation between two joints: branch order, borders, confidences and the exact reason texts.
#include "pose/ConditionDirection.h"
#include "pose/ReasonFormat.h"

#include "tests/pose/JointBuilder.h"

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

using testing::sample;
using testing::unlocated;
using R = ConditionDirectionRelation;

struct DirectionCase
{
    const char* label;
    QPointF a;
    QPointF b;
    R relation;
    const char* reason;
};

class DirectionRelation : public ::testing::TestWithParam<DirectionCase>
{
};

TEST_P(DirectionRelation, GivesTheRelationAndItsReasonText)
{
    const DirectionCase& c = GetParam();
    const auto result = evaluateConditionDirection(sample("A", c.a.x(), c.a.y()), sample("B", c.b.x(), c.b.y()));
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->relation, c.relation);
    EXPECT_EQ(result->reason, QString::fromUtf8(c.reason));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DirectionRelation,
    ::testing::Values(
        DirectionCase{"straightDown", {0.5, 0.60}, {0.5, 0.40}, R::r1Vertical, "A 高于 B，且向量位于向下 40.0° 锥内"},
        DirectionCase{"outsideCone", {0.5, 0.60}, {0.9, 0.40}, R::r2Horizontal, "向量偏离垂直锥角（63.4°）"},
        DirectionCase{"heightClose", {0.3, 0.500}, {0.7, 0.515}, R::r2Horizontal,
                      "A 与 B 高度接近（ΔY=-0.015)，判定为水平侧向"},
        DirectionCase{"risingAlmostFlat", {0.5, 0.40}, {0.1, 0.45}, R::r3Upward, "A 低于 B，B 明显更高（ΔY=0.050)"},
        // 0.02 - 0.0 is exactly the threshold in binary, so this is the border itself, not a neighbour of it.
        DirectionCase{"deltaAtThreshold", {0.5, 0.02}, {0.5, 0.0}, R::r2Horizontal,
                      "A 与 B 高度接近（ΔY=0.020)，判定为水平侧向"},
        DirectionCase{"decimalDeltaAtThreshold", {0.5, 0.52}, {0.5, 0.50}, R::r2Horizontal,
                      "A 与 B 高度接近（ΔY=0.020)，判定为水平侧向"},
        DirectionCase{"justAboveThreshold", {0.5, 0.521}, {0.5, 0.50}, R::r1Vertical,
                      "A 高于 B，且向量位于向下 40.0° 锥内"},
        DirectionCase{"risingAtThreshold", {0.5, 0.0}, {0.5, 0.02}, R::r2Horizontal,
                      "A 与 B 高度接近（ΔY=-0.020)，判定为水平侧向"},
        DirectionCase{"straightUp", {0.5, 0.2}, {0.5, 0.8}, R::r3Upward, "A 低于 B，B 明显更高（ΔY=0.600)"}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(DirectionRelation, AVectorExactlyOnTheConeBorderIsInside)
{
    const auto a = sample("A", 0.5, 0.8);
    const auto b = sample("B", 0.5 + 0.3 * std::sin(40.0 * M_PI / 180.0), 0.8 - 0.3 * std::cos(40.0 * M_PI / 180.0));
    const auto measured = evaluateConditionDirection(a, b, 90.0);
    ASSERT_TRUE(measured.has_value());
    EXPECT_NEAR(measured->angleToDownward, 40.0, 1e-9);
    // The measured angle as the cone: equality must count as inside.
    const auto onBorder = evaluateConditionDirection(a, b, measured->angleToDownward);
    ASSERT_TRUE(onBorder.has_value());
    EXPECT_EQ(onBorder->relation, R::r1Vertical);
    EXPECT_EQ(evaluateConditionDirection(a, b, 40.0)->relation, R::r1Vertical);
    EXPECT_EQ(evaluateConditionDirection(a, b, 39.999)->relation, R::r2Horizontal);
}

TEST(DirectionRelation, TheReasonQuotesTheConeParameterInShortestForm)
{
    const auto a = sample("A", 0.5, 0.6);
    const auto b = sample("B", 0.5, 0.4);
    EXPECT_EQ(evaluateConditionDirection(a, b, 37.5, 0.02)->reason, QStringLiteral("A 高于 B，且向量位于向下 37.5° 锥内"));
    EXPECT_EQ(evaluateConditionDirection(a, b, 45.0, 0.02)->reason, QStringLiteral("A 高于 B，且向量位于向下 45.0° 锥内"));
}

TEST(DirectionRelation, FillsEveryQuantity)
{
    const auto result = evaluateConditionDirection(sample("left_upLeg", 0.5, 0.60, 0.8f), sample("left_leg", 0.9, 0.30, 0.4f));
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->pointAName, QStringLiteral("left_upLeg"));
    EXPECT_EQ(result->pointBName, QStringLiteral("left_leg"));
    EXPECT_EQ(result->pointA, QPointF(0.5, 0.6));
    EXPECT_EQ(result->pointB, QPointF(0.9, 0.3));
    EXPECT_NEAR(result->vector.dx, 0.4, 1e-12);
    EXPECT_NEAR(result->vector.dy, -0.3, 1e-12);
    EXPECT_NEAR(result->vectorLength, 0.5, 1e-12);
    EXPECT_NEAR(result->angleToDownward, 53.130102354, 1e-6);
    EXPECT_DOUBLE_EQ(result->confidenceA, double(0.8f));
    EXPECT_DOUBLE_EQ(result->confidenceB, double(0.4f));
    EXPECT_DOUBLE_EQ(result->combinedConfidence, (double(0.8f) + double(0.4f)) / 2);
}

TEST(DirectionRelation, AngleIsMeasuredFromStraightDownUpTo180)
{
    EXPECT_NEAR(evaluateConditionDirection(sample("A", 0.5, 0.5), sample("B", 0.5, 0.9))->angleToDownward, 180.0, 1e-9);
    EXPECT_NEAR(evaluateConditionDirection(sample("A", 0.5, 0.5), sample("B", 0.1, 0.5))->angleToDownward, 90.0, 1e-9);
}

TEST(DirectionRelation, NoResultWithoutTwoDistinctLocatedPoints)
{
    EXPECT_FALSE(evaluateConditionDirection(sample("A", 0.4, 0.4), sample("B", 0.4, 0.4)).has_value());
    EXPECT_FALSE(evaluateConditionDirection(unlocated("A"), sample("B", 0.4, 0.4)).has_value());
    EXPECT_FALSE(evaluateConditionDirection(sample("A", 0.4, 0.4), unlocated("B")).has_value());
}

struct ConfidenceCase
{
    float a;
    float b;
    double combined;
};

class CombinedConfidence : public ::testing::TestWithParam<ConfidenceCase>
{
};

TEST_P(CombinedConfidence, IsClampedToZeroOne)
{
    const auto result =
        evaluateConditionDirection(sample("A", 0.5, 0.6, GetParam().a), sample("B", 0.5, 0.4, GetParam().b));
    EXPECT_DOUBLE_EQ(result->combinedConfidence, GetParam().combined);
    EXPECT_EQ(result->relation, R::r1Vertical) << "confidence never changes the verdict";
}

INSTANTIATE_TEST_SUITE_P(Cases, CombinedConfidence,
                         ::testing::Values(ConfidenceCase{0.9f, 1.3f, 1.0}, ConfidenceCase{-0.4f, 0.2f, 0.0},
                                           ConfidenceCase{0.0f, 0.0f, 0.0}));

TEST(ReasonFormat, WritesNumbersAsCAndTheShortestDecimalDo)
{
    EXPECT_EQ(shortestDecimal(40.0), QStringLiteral("40.0"));
    EXPECT_EQ(shortestDecimal(0.1), QStringLiteral("0.1"));
    EXPECT_EQ(shortestDecimal(1e16), QStringLiteral("1e+16"));
    EXPECT_EQ(printfFixed(-0.0151, 3), QStringLiteral("-0.015"));
    EXPECT_EQ(printfFixed(63.43494882, 1), QStringLiteral("63.4"));
    EXPECT_EQ(printfFixed(0.0, 3), QStringLiteral("0.000"));
}

} // namespace
} // namespace lumaro::pose
