// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PoseAction.h"

#include <array>
#include <cstdio>

namespace lumaro::pose {

namespace {

struct ActionRow
{
    PoseAction action;
    const char* id;
    PoseActionLevel1 level1;
    const char* displayName;
    const char* summary;
    const char* condition; // nullptr: no automatic rule yet
};

using L1 = PoseActionLevel1;

constexpr std::array<ActionRow, 20> kRows{{
    {PoseAction::layread, "layread", L1::lay, "躺读 Lay & Read", "人物躺靠姿态，常见手持书本或平板，需观察肩颈角度。",
     "LEV1 POSE_DIVERSE 或 POSE_SIT 且无几何命中，Vision Tag 包含 book/material"},
    {PoseAction::teasit, "teasit", L1::sit, "品茶坐 Tea Sit",
     "上半身挺直的坐姿，双手围绕杯具或桌面细节，突出轻松仪式感。", nullptr},
    {PoseAction::squat, "squat", L1::squat, "下蹲 Squat", "低位蹲姿，髋膝折叠明显，重心贴近地面或椅面。",
     "LEV1 POSE_SIT，双侧 Hip→Ankle 短于 Knee→Ankle"},
    {PoseAction::balance, "balance", L1::stand, "平衡 Balance", "身体重心不在对称轴，腿部或手臂形成支撑以保持平衡。",
     "LEV1 POSE_STAND，双踝横跨方向向右但宽度 < 1.8倍腰部宽度"},
    {PoseAction::sideway, "sideway", L1::stand, "侧向 Sideway", "身体横向转动，正面不对镜头，肩线明显偏转。", nullptr},
    {PoseAction::tuck, "tuck", L1::sit, "抱膝 Tuck", "膝盖贴近胸腔或手臂抱膝，整体呈紧凑包裹姿态。", nullptr},
    {PoseAction::perch, "perch", L1::sit, "栖息 Perch", "人物坐于狭窄支撑点（如椅沿、台阶），双脚多半悬空。", nullptr},
    {PoseAction::prop, "prop", L1::stand, "支撑 Prop", "借助道具支撑或交互，如手扶桌沿、靠墙等。", nullptr},
    {PoseAction::recline, "recline", L1::lay, "斜倚 Recline", "上半身后仰并有支撑，常见于沙发或躺椅半躺姿态。",
     nullptr},
    {PoseAction::supine, "supine", L1::supine, "仰卧 Supine", "仰面全身贴地或平面，背部朝下。", nullptr},
    {PoseAction::walk, "walk", L1::stand, "行走 Walk", "动态行走或迈步瞬间，双脚处于分离状态。",
     "LEV1 POSE_STAND，双踝横跨方向向右且宽度 >= 1.8倍腰部宽度"},
    {PoseAction::prone, "prone", L1::lay, "俯卧 Prone", "俯卧姿态，胸腹贴近平面，面部朝向地面。",
     "LEV1 POSE_SIT，Ankle 高于眼/耳/肩 且 Hip→Knee 水平"},
    {PoseAction::stand, "stand", L1::stand, "站立 Stand", "标准站姿，双脚支撑身体重量，脊背竖直。",
     "LEV1 POSE_STAND（Hip→Knee 为 CONDITION_DIRECTION.R1），第二层无横跨判定或双脚交叉"},
    {PoseAction::tread, "tread", L1::stand, "侧踏 Tread", "跨越高低差，常伴随脚掌抬升。",
     "LEV1 POSE_STAND，一侧 Hip-Knee 为 R1 纵向支撑，另一侧为 R3 抬腿"},
    {PoseAction::side, "side", L1::lay, "侧卧 Side Lay", "身体侧卧，肩髋对齐于同一平面。", nullptr},
    {PoseAction::knee, "knee", L1::knee, "跪 Kneel", "单膝或双膝着地，髋膝角度锐化。",
     "LEV1 POSE_STAND，匹配侧 Knee to Ankle 为 CONDITION_DIRECTION.R2"},
    {PoseAction::upkick, "upkick", L1::diverse, "上踢 Upkick", "腿部向上踢或抬高，形成明显踢腿线条。",
     "LEV1 POSE_SIT，Ankle 高于眼/耳 且 Hip→Knee 上扬"},
    {PoseAction::sit, "sit", L1::sit, "坐 Sit", "常规坐姿，臀部着座面，躯干垂直或微倾。",
     "LEV1 POSE_SIT（双侧 Hip→Knee 为 R2 或 R3），第二层无命中"},
    {PoseAction::lay, "lay", L1::lay, "平躺 Lay", "平卧或自然躺下姿态，四肢松弛分布。",
     "LEV1 POSE_SIT，Elbow→Hip 水平"},
    {PoseAction::diverse, "diverse", L1::diverse, "多样混合 Diverse",
     "无法明确归类到单一基础动作的混合姿态或特殊动作。", "LEV1 POSE_DIVERSE（缺少 Hip / Knee 有效矢量）"},
}};

const QString kPlaceholderCondition =
    QStringLiteral("待补充骨架/面部/上下文判定条件（可能组合第一层判定，也可能单独判断）");

std::vector<PoseActionRuleDefinition> buildDefinitions()
{
    std::vector<PoseActionRuleDefinition> definitions;
    int order = 0;
    for (const ActionRow& row : kRows) {
        ++order;
        char code[16];
        std::snprintf(code, sizeof code, "C01-%02d", order);
        PoseActionRuleDefinition definition;
        definition.id = QString::fromUtf8(row.id);
        definition.category = PoseActionCategory::actionListC01;
        definition.action = row.action;
        definition.level1 = row.level1;
        definition.order = order;
        definition.code = QString::fromLatin1(code);
        definition.displayName = QString::fromUtf8(row.displayName);
        definition.summary = QString::fromUtf8(row.summary);
        definition.telemetryLabel = rawValue(PoseActionCategory::actionListC01) + QLatin1Char('.') + definition.id;
        definition.condition = row.condition ? QString::fromUtf8(row.condition) : kPlaceholderCondition;
        definitions.push_back(std::move(definition));
    }
    return definitions;
}

} // namespace

QString rawValue(PoseAction action)
{
    return ruleDefinition(action).id;
}

QString rawValue(PoseActionCategory)
{
    return QStringLiteral("action_list_c01");
}

QString rawValue(PoseActionLevel1 level1)
{
    static const std::array<const char*, 7> names{"stand", "squat", "knee", "lay", "sit", "supine", "diverse"};
    return QString::fromLatin1(names.at(std::size_t(level1)));
}

std::optional<PoseAction> poseActionFromRawValue(const QString& id)
{
    for (const PoseActionRuleDefinition& definition : actionListC01()) {
        if (definition.id == id)
            return definition.action;
    }
    return std::nullopt;
}

const std::vector<PoseActionRuleDefinition>& actionListC01()
{
    static const std::vector<PoseActionRuleDefinition> definitions = buildDefinitions();
    return definitions;
}

const PoseActionRuleDefinition& ruleDefinition(PoseAction action)
{
    // The table keeps the enumeration's order, so the case's position is its row.
    return actionListC01().at(std::size_t(action));
}

PoseAction poseActionFor(PoseValueLevel2Pose pose)
{
    switch (pose) {
    case PoseValueLevel2Pose::stand:
        return PoseAction::stand;
    case PoseValueLevel2Pose::standKnee:
        return PoseAction::knee;
    case PoseValueLevel2Pose::standTread:
        return PoseAction::tread;
    case PoseValueLevel2Pose::standWalk:
        return PoseAction::walk;
    case PoseValueLevel2Pose::standBalance:
        return PoseAction::balance;
    case PoseValueLevel2Pose::sitSquat:
        return PoseAction::squat;
    case PoseValueLevel2Pose::sitUpkick:
        return PoseAction::upkick;
    case PoseValueLevel2Pose::sitProne:
        return PoseAction::prone;
    case PoseValueLevel2Pose::sitLay:
        return PoseAction::lay;
    case PoseValueLevel2Pose::diverseLayread:
        return PoseAction::layread;
    }
    return PoseAction::diverse;
}

PoseAction poseActionFor(PoseValueLevel1Pose pose)
{
    switch (pose) {
    case PoseValueLevel1Pose::stand:
        return PoseAction::stand;
    case PoseValueLevel1Pose::sit:
        return PoseAction::sit;
    case PoseValueLevel1Pose::diverse:
        return PoseAction::diverse;
    }
    return PoseAction::diverse;
}

} // namespace lumaro::pose
