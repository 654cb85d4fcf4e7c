// SPDX-License-Identifier: GPL-3.0-or-later
// The action vocabulary: twenty rows in table order, codes, labels, the placeholder condition, verdict mapping.
#include "pose/PoseAction.h"

#include <gtest/gtest.h>

#include <set>

namespace lumaro::pose {
namespace {

TEST(ActionList, HasTheTwentyActionsInTableOrderWithCodesAndLabels)
{
    const auto& rows = actionListC01();
    ASSERT_EQ(rows.size(), 20u);
    const QStringList ids{"layread", "teasit", "squat", "balance", "sideway", "tuck", "perch",
                          "prop", "recline", "supine", "walk", "prone", "stand", "tread",
                          "side", "knee", "upkick", "sit", "lay", "diverse"};
    std::set<QString> codes;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const PoseActionRuleDefinition& row = rows[i];
        EXPECT_EQ(row.id, ids.at(qsizetype(i)));
        EXPECT_EQ(rawValue(row.action), row.id);
        EXPECT_EQ(row.order, int(i) + 1);
        EXPECT_EQ(row.code, QString::asprintf("C01-%02d", int(i) + 1));
        EXPECT_EQ(row.telemetryLabel, QStringLiteral("action_list_c01.") + row.id);
        EXPECT_EQ(rawValue(row.category), QStringLiteral("action_list_c01"));
        EXPECT_FALSE(row.displayName.isEmpty());
        EXPECT_FALSE(row.summary.isEmpty());
        EXPECT_FALSE(row.condition.isEmpty());
        codes.insert(row.code);
        EXPECT_EQ(poseActionFromRawValue(row.id), row.action);
    }
    EXPECT_EQ(codes.size(), 20u);
    EXPECT_FALSE(poseActionFromRawValue(QStringLiteral("jump")).has_value());
}

TEST(ActionList, KeepsTheDisplayNamesAndSummariesCharacterForCharacter)
{
    EXPECT_EQ(ruleDefinition(PoseAction::layread).displayName, QStringLiteral("躺读 Lay & Read"));
    EXPECT_EQ(ruleDefinition(PoseAction::side).displayName, QStringLiteral("侧卧 Side Lay"));
    EXPECT_EQ(ruleDefinition(PoseAction::knee).displayName, QStringLiteral("跪 Kneel"));
    EXPECT_EQ(ruleDefinition(PoseAction::diverse).displayName, QStringLiteral("多样混合 Diverse"));
    EXPECT_EQ(ruleDefinition(PoseAction::perch).summary,
              QStringLiteral("人物坐于狭窄支撑点（如椅沿、台阶），双脚多半悬空。"));
    EXPECT_EQ(ruleDefinition(PoseAction::stand).summary, QStringLiteral("标准站姿，双脚支撑身体重量，脊背竖直。"));
}

TEST(ActionList, ActionsWithoutAnAutomaticRuleCarryThePlaceholderCondition)
{
    const QString placeholder =
        QStringLiteral("待补充骨架/面部/上下文判定条件（可能组合第一层判定，也可能单独判断）");
    for (const PoseAction action : {PoseAction::teasit, PoseAction::sideway, PoseAction::tuck, PoseAction::perch,
                                    PoseAction::prop, PoseAction::recline, PoseAction::supine, PoseAction::side})
        EXPECT_EQ(ruleDefinition(action).condition, placeholder) << rawValue(action).toStdString();
    for (const PoseAction action : {PoseAction::walk, PoseAction::knee, PoseAction::layread, PoseAction::stand})
        EXPECT_NE(ruleDefinition(action).condition, placeholder) << rawValue(action).toStdString();
}

TEST(ActionList, GroupsUnderTheSevenBasicActions)
{
    EXPECT_EQ(rawValue(PoseActionLevel1::stand), QStringLiteral("stand"));
    EXPECT_EQ(rawValue(PoseActionLevel1::supine), QStringLiteral("supine"));
    EXPECT_EQ(rawValue(PoseActionLevel1::diverse), QStringLiteral("diverse"));
    EXPECT_EQ(ruleDefinition(PoseAction::walk).level1, PoseActionLevel1::stand);
    EXPECT_EQ(ruleDefinition(PoseAction::knee).level1, PoseActionLevel1::knee);
    EXPECT_EQ(ruleDefinition(PoseAction::supine).level1, PoseActionLevel1::supine);
}

struct MappingCase
{
    PoseValueLevel2Pose pose;
    const char* action;
};

class VerdictToAction : public ::testing::TestWithParam<MappingCase>
{
};

TEST_P(VerdictToAction, MapsEveryLevel2Verdict)
{
    EXPECT_EQ(rawValue(poseActionFor(GetParam().pose)), QString::fromLatin1(GetParam().action));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, VerdictToAction,
    ::testing::Values(MappingCase{PoseValueLevel2Pose::stand, "stand"}, MappingCase{PoseValueLevel2Pose::standKnee, "knee"},
                      MappingCase{PoseValueLevel2Pose::standTread, "tread"},
                      MappingCase{PoseValueLevel2Pose::standWalk, "walk"},
                      MappingCase{PoseValueLevel2Pose::standBalance, "balance"},
                      MappingCase{PoseValueLevel2Pose::sitSquat, "squat"},
                      MappingCase{PoseValueLevel2Pose::sitUpkick, "upkick"},
                      MappingCase{PoseValueLevel2Pose::sitProne, "prone"},
                      MappingCase{PoseValueLevel2Pose::sitLay, "lay"},
                      MappingCase{PoseValueLevel2Pose::diverseLayread, "layread"}));

TEST(VerdictToAction, Level1VerdictsStandForThemselves)
{
    EXPECT_EQ(poseActionFor(PoseValueLevel1Pose::stand), PoseAction::stand);
    EXPECT_EQ(poseActionFor(PoseValueLevel1Pose::sit), PoseAction::sit);
    EXPECT_EQ(poseActionFor(PoseValueLevel1Pose::diverse), PoseAction::diverse);
}

} // namespace
} // namespace lumaro::pose
