// SPDX-License-Identifier: GPL-3.0-or-later
// Level-2 pose naming: kneel, tread, straddle (walk/balance), squat, upkick, prone, lay and the reading tag,
// with their matched conditions and reasons as users read them.
#include "pose/PoseValueLevel2Estimator.h"

#include "tests/pose/JointBuilder.h"

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

using testing::joints;
using testing::JointRow;
using P2 = PoseValueLevel2Pose;

// A person standing straight: hips at 0.45/0.55, knees straight below, ankles below the knees at `leftFootX`,
// `rightFootX`.
platform::JointDictionary standing(double leftFootX = 0.45, double rightFootX = 0.55)
{
    return joints({{"left_upLeg", 0.45, 0.5}, {"right_upLeg", 0.55, 0.5}, {"left_leg", 0.45, 0.3},
                   {"right_leg", 0.55, 0.3}, {"left_foot", leftFootX, 0.1}, {"right_foot", rightFootX, 0.1}});
}

platform::JointDictionary with(platform::JointDictionary base, std::initializer_list<JointRow> changes)
{
    for (const auto& [key, sample] : joints(changes).asKeyValueRange())
        base.insert(key, sample);
    return base;
}

platform::JointDictionary without(platform::JointDictionary base, std::initializer_list<const char*> keys)
{
    for (const char* key : keys)
        base.remove(QString::fromLatin1(key));
    return base;
}

std::optional<PoseValueLevel2Result> level2(const platform::JointDictionary& person,
                                            const std::optional<QStringList>& tags = std::nullopt)
{
    const PoseValueLevel1Result first = PoseValueLevel1Estimator().evaluate(person);
    return PoseValueLevel2Estimator().evaluate(first, person, tags);
}

struct Level2Case
{
    const char* label;
    platform::JointDictionary joints;
    std::optional<QStringList> tags;
    std::optional<P2> pose; // nullopt: no second-layer result
    const char* condition;
    const char* reason;
};

class Level2 : public ::testing::TestWithParam<Level2Case>
{
};

TEST_P(Level2, RefinesTheFirstLayer)
{
    const Level2Case& c = GetParam();
    const auto result = level2(c.joints, c.tags);
    ASSERT_EQ(result.has_value(), c.pose.has_value());
    if (!result)
        return;
    EXPECT_EQ(rawValue(result->pose), rawValue(*c.pose));
    EXPECT_EQ(result->matchedCondition, QString::fromUtf8(c.condition));
    EXPECT_EQ(result->reason, QString::fromUtf8(c.reason));
}

// A sitting person seen from the side, knees out to the right, feet down: level 1 sit on both thighs.
platform::JointDictionary sitting()
{
    return joints({{"left_upLeg", 0.40, 0.50}, {"right_upLeg", 0.42, 0.50}, {"left_leg", 0.60, 0.50},
                   {"right_leg", 0.62, 0.51}, {"left_foot", 0.60, 0.20}, {"right_foot", 0.62, 0.20},
                   {"left_eye", 0.42, 0.90}, {"right_eye", 0.43, 0.90}, {"left_ear", 0.40, 0.88},
                   {"right_ear", 0.41, 0.88}, {"left_shoulder", 0.40, 0.75}, {"right_shoulder", 0.42, 0.75},
                   {"left_forearm", 0.45, 0.62}, {"right_forearm", 0.47, 0.62}});
}

INSTANTIATE_TEST_SUITE_P(
    Stand, Level2,
    ::testing::Values(
        Level2Case{"walkAtExactlyOnePointEight", standing(0.40, 0.58), std::nullopt, P2::standWalk,
                   "横跨方向向右且宽度 >= 1.8倍腰部宽度", "横跨宽度(0.180) >= 1.8倍腰部宽度(0.180)"},
        Level2Case{"balance", standing(0.42, 0.58), std::nullopt, P2::standBalance,
                   "横跨方向向右但宽度 < 1.8倍腰部宽度", "横跨宽度(0.160) < 1.8倍腰部宽度(0.180)"},
        Level2Case{"feetCrossed", standing(0.56, 0.44), std::nullopt, P2::stand, "横跨方向非向右",
                   "横跨方向非向右（dx=-0.120）"},
        Level2Case{"feetSameX", with(standing(), {{"left_foot", 0.5, 0.1}, {"right_foot", 0.5, 0.12}}),
                   std::nullopt, P2::stand, "横跨方向非向右", "横跨方向非向右（dx=0.000）"},
        Level2Case{"feetOnOnePoint", standing(0.5, 0.5), std::nullopt, P2::stand, "横跨方向评估失败",
                   "无法计算横跨方向矢量"},
        Level2Case{"noRightFoot", without(standing(), {"right_foot"}), std::nullopt, P2::stand, "无横跨判定条件",
                   "缺少左右踝关节坐标"},
        Level2Case{"leftFootUnlocated", with(standing(), {{"left_foot", 0, 0, 0.1f, false}}), std::nullopt,
                   P2::stand, "无横跨判定条件", "缺少左右踝关节坐标"},
        // Only the left thigh is there, so the waist cannot be measured.
        Level2Case{"noRightHip", without(standing(0.40, 0.58), {"right_upLeg"}), std::nullopt, P2::stand,
                   "缺少髋部坐标", "无法计算腰部宽度（缺少髋部坐标）"},
        // Level 1 stands on the left; the left shank lies sideways while the right one hangs straight.
        Level2Case{"kneelOnTheMatchedSide",
                   with(standing(), {{"left_upLeg", 0.45, 0.5, 0.95f}, {"left_leg", 0.45, 0.3, 0.95f},
                                     {"left_foot", 0.20, 0.31}}),
                   std::nullopt, P2::standKnee, "CONDITION_DIRECTION.R2 (Knee to Ankle, left侧)",
                   "left侧 Knee to Ankle 为 R2 横向关系，且与 LEV1 匹配侧一致"},
        // The horizontal shank is on the side that did not decide level 1: no kneel.
        Level2Case{"horizontalShankOnTheOtherSide",
                   with(standing(), {{"left_upLeg", 0.45, 0.5, 0.95f}, {"left_leg", 0.45, 0.3, 0.95f},
                                     {"right_foot", 0.85, 0.31}}),
                   std::nullopt, P2::standWalk, "横跨方向向右且宽度 >= 1.8倍腰部宽度",
                   "横跨宽度(0.400) >= 1.8倍腰部宽度(0.180)"},
        Level2Case{"treadRightRaised", with(standing(), {{"right_leg", 0.60, 0.6}, {"right_foot", 0.60, 0.4}}),
                   std::nullopt, P2::standTread, "Hip-Knee: Side LEFT (R1) 且 Side RIGHT (R3)",
                   "left侧 Hip-Knee 为 R1 纵向支撑，right侧 Hip-Knee 为 R3 抬腿"},
        Level2Case{"treadLeftRaised", with(standing(), {{"left_leg", 0.40, 0.6}, {"left_foot", 0.40, 0.4}}),
                   std::nullopt, P2::standTread, "Hip-Knee: Side RIGHT (R1) 且 Side LEFT (R3)",
                   "right侧 Hip-Knee 为 R1 纵向支撑，left侧 Hip-Knee 为 R3 抬腿"}),
    [](const auto& info) { return std::string(info.param.label); });

INSTANTIATE_TEST_SUITE_P(
    Sit, Level2,
    ::testing::Values(
        Level2Case{"plainSitHasNoResult", sitting(), std::nullopt, std::nullopt, "", ""},
        Level2Case{"squat",
                   with(sitting(), {{"left_foot", 0.45, 0.45}, {"right_foot", 0.47, 0.45}}), std::nullopt,
                   P2::sitSquat, "Hip→Ankle shorter than Knee→Ankle (both sides)",
                   "L:0.071<0.158, R:0.071<0.162"},
        Level2Case{"squatNeedsBothSides", with(without(sitting(), {"right_foot"}), {{"left_foot", 0.45, 0.45}}),
                   std::nullopt, std::nullopt, "", ""},
        // The right ankle above the right ear, the right thigh rising at sin 0.6.
        Level2Case{"upkickRight",
                   with(sitting(), {{"right_leg", 0.58, 0.62}, {"right_foot", 0.70, 0.95}}), std::nullopt,
                   P2::sitUpkick, "Ankle higher than eye/ear 且 Hip→Knee 上扬 (right)", "满足上踢侧边: right"},
        Level2Case{"upkickBothSides",
                   with(sitting(), {{"left_leg", 0.56, 0.62}, {"left_foot", 0.68, 0.95}, {"right_leg", 0.58, 0.62},
                                    {"right_foot", 0.70, 0.95}}),
                   std::nullopt, P2::sitUpkick, "Ankle higher than eye/ear 且 Hip→Knee 上扬 (left, right)",
                   "满足上踢侧边: left, right"},
        Level2Case{"upkickNeedsEyeOrEar",
                   with(without(sitting(), {"right_eye", "right_ear", "right_shoulder", "left_forearm",
                                            "right_forearm"}),
                        {{"right_leg", 0.58, 0.62}, {"right_foot", 0.70, 0.95}}),
                   std::nullopt, std::nullopt, "", ""},
        // Lying on the belly, thighs level, feet raised above the shoulders.
        Level2Case{"prone",
                   with(sitting(), {{"left_foot", 0.62, 0.80}, {"left_eye", 0.1, 0.95}, {"left_ear", 0.1, 0.95}}),
                   std::nullopt, P2::sitProne, "Ankle 高于眼/耳/肩 且 Hip→Knee 水平 (left)",
                   "满足俯卧侧边: left"},
        Level2Case{"lay", with(sitting(), {{"right_forearm", 0.20, 0.52}}), std::nullopt, P2::sitLay,
                   "Elbow→Hip 水平 (right侧)", "right侧 Elbow→Hip 水平关系"},
        Level2Case{"readingTagWhenSitting", sitting(), QStringList{QStringLiteral("Notebook"), QStringLiteral("desk")},
                   P2::diverseLayread, "Vision Tag 包含 book/material", "Vision Tags: Notebook, desk"},
        Level2Case{"noReadingTag", sitting(), QStringList{QStringLiteral("desk")}, std::nullopt, "", ""}),
    [](const auto& info) { return std::string(info.param.label); });

platform::JointDictionary noThighs()
{
    return joints({{"left_eye", 0.4, 0.9}, {"right_eye", 0.5, 0.9}, {"left_shoulder", 0.3, 0.7}});
}

INSTANTIATE_TEST_SUITE_P(
    Diverse, Level2,
    ::testing::Values(
        Level2Case{"notebook", noThighs(), QStringList{QStringLiteral("Notebook")}, P2::diverseLayread,
                   "Vision Tag 包含 book", "Vision Tags 命中 book 关键字"},
        Level2Case{"rawMaterialSameWording", noThighs(), QStringList{QStringLiteral("Raw Material")},
                   P2::diverseLayread, "Vision Tag 包含 book", "Vision Tags 命中 book 关键字"},
        Level2Case{"noTags", noThighs(), std::nullopt, std::nullopt, "", ""},
        Level2Case{"otherTags", noThighs(), QStringList{QStringLiteral("beach")}, std::nullopt, "", ""}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(Level2Stand, StoresWidthsAndTheCrossDirection)
{
    const auto result = level2(standing(0.40, 0.58));
    ASSERT_TRUE(result.has_value());
    ASSERT_TRUE(result->hipWidth && result->crossWidth && result->crossDirectionResult);
    EXPECT_NEAR(*result->hipWidth, 0.10, 1e-12);
    EXPECT_NEAR(*result->crossWidth, 0.18, 1e-12);
    EXPECT_EQ(result->crossDirectionResult->pointAName, QStringLiteral("left_foot"));
    EXPECT_EQ(result->kneeAnkleEvaluations.size(), 2u);
}

TEST(Level2Stand, CrossedFeetRecordTheWidthOnly)
{
    const auto result = level2(standing(0.56, 0.44));
    EXPECT_NEAR(result->crossWidth.value(), 0.12, 1e-12);
    EXPECT_FALSE(result->hipWidth.has_value());
}

TEST(Level2Stand, MissingHipRecordsTheSignedCrossWidth)
{
    const auto result = level2(without(standing(0.40, 0.58), {"right_upLeg"}));
    EXPECT_NEAR(result->crossWidth.value(), 0.18, 1e-12);
    EXPECT_FALSE(result->hipWidth.has_value());
}

TEST(ReadingTag, IsASubstringTestOnTheLowerCasedTag)
{
    for (const char* tag : {"book", "Notebook", "BOOKCASE", "raw material", "Material"})
        EXPECT_TRUE(PoseValueLevel2Estimator::isReadingTag(QString::fromLatin1(tag))) << tag;
    for (const char* tag : {"boo k", "mat", "", "reading"})
        EXPECT_FALSE(PoseValueLevel2Estimator::isReadingTag(QString::fromLatin1(tag))) << tag;
}

} // namespace
} // namespace lumaro::pose
