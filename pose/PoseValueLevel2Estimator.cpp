// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PoseValueLevel2Estimator.h"

#include "pose/ReasonFormat.h"

#include <cmath>
#include <initializer_list>

namespace lumaro::pose {

namespace {

double distance(QPointF one, QPointF other)
{
    return std::hypot(other.x() - one.x(), other.y() - one.y());
}

bool hasReadingTag(const std::optional<QStringList>& tags)
{
    if (!tags)
        return false;
    for (const QString& tag : *tags) {
        if (PoseValueLevel2Estimator::isReadingTag(tag))
            return true;
    }
    return false;
}

QString sideList(const QStringList& sides)
{
    return sides.join(QStringLiteral(", "));
}

// The ankle is above at least one of the given reference joints that is located; none located: false.
bool ankleAboveAny(const platform::JointDictionary& joints, PoseBodySide side, QPointF ankle,
                   std::initializer_list<BodyPoint> references)
{
    for (const BodyPoint point : references) {
        const auto reference = locationAt(joints, side, point);
        if (reference && ankle.y() > reference->y())
            return true;
    }
    return false;
}

// The thigh's vertical rise over its length, or nullopt when hip or knee is missing or they coincide.
std::optional<double> thighRise(const platform::JointDictionary& joints, PoseBodySide side)
{
    const auto hip = locationAt(joints, side, BodyPoint::hip);
    const auto knee = locationAt(joints, side, BodyPoint::knee);
    if (!hip || !knee)
        return std::nullopt;
    const double length = distance(*hip, *knee);
    if (!(length > 0.0))
        return std::nullopt;
    return (knee->y() - hip->y()) / length;
}

PoseValueLevel2Result verdict(PoseValueLevel2Pose pose, QString condition, QString reason)
{
    PoseValueLevel2Result result;
    result.pose = pose;
    result.matchedCondition = std::move(condition);
    result.reason = std::move(reason);
    return result;
}

} // namespace

QString rawValue(PoseValueLevel2Pose pose)
{
    switch (pose) {
    case PoseValueLevel2Pose::stand:
        return QStringLiteral("POSE_STAND");
    case PoseValueLevel2Pose::standKnee:
        return QStringLiteral("POSE_KNEE");
    case PoseValueLevel2Pose::standTread:
        return QStringLiteral("POSE_TREAD");
    case PoseValueLevel2Pose::standWalk:
        return QStringLiteral("POSE_WALK");
    case PoseValueLevel2Pose::standBalance:
        return QStringLiteral("POSE_BALANCE");
    case PoseValueLevel2Pose::sitSquat:
        return QStringLiteral("POSE_SQUAT");
    case PoseValueLevel2Pose::sitUpkick:
        return QStringLiteral("POSE_UPKICK");
    case PoseValueLevel2Pose::sitProne:
        return QStringLiteral("POSE_PRONE");
    case PoseValueLevel2Pose::sitLay:
        return QStringLiteral("POSE_LAY");
    case PoseValueLevel2Pose::diverseLayread:
        return QStringLiteral("POSE_LAYREAD");
    }
    return {};
}

bool PoseValueLevel2Estimator::isReadingTag(const QString& tag)
{
    const QString lower = tag.toLower();
    return lower.contains(QStringLiteral("book")) || lower.contains(QStringLiteral("material"));
}

std::vector<KneeAnklePair> PoseValueLevel2Estimator::kneeAnklePairs(const platform::JointDictionary& joints)
{
    std::vector<KneeAnklePair> pairs;
    for (const PoseBodySide side : kBodySides) {
        const auto knee = jointAt(joints, side, BodyPoint::knee);
        const auto ankle = jointAt(joints, side, BodyPoint::ankle);
        if (knee && ankle)
            pairs.push_back({side, *knee, *ankle});
    }
    return pairs;
}

std::optional<PoseValueLevel2Result>
PoseValueLevel2Estimator::evaluate(const PoseValueLevel1Result& level1, const platform::JointDictionary& joints,
                                   const std::optional<QStringList>& visionTags) const
{
    switch (level1.pose) {
    case PoseValueLevel1Pose::stand:
        return standRules(level1, joints);
    case PoseValueLevel1Pose::sit:
        return sitRules(joints, visionTags);
    case PoseValueLevel1Pose::diverse:
        break;
    }
    if (!hasReadingTag(visionTags))
        return std::nullopt;
    // Same test as the sit path; only the wording of the condition differs, and users know both texts.
    return verdict(PoseValueLevel2Pose::diverseLayread, QStringLiteral("Vision Tag 包含 book"),
                         QStringLiteral("Vision Tags 命中 book 关键字"));
}

PoseValueLevel2Result PoseValueLevel2Estimator::standRules(const PoseValueLevel1Result& level1,
                                                           const platform::JointDictionary& joints)
{
    PoseValueLevel2Result result;
    for (const KneeAnklePair& pair : kneeAnklePairs(joints)) {
        if (auto direction = evaluateConditionDirection(pair.knee, pair.ankle))
            result.kneeAnkleEvaluations.emplace(pair.side, std::move(*direction));
    }

    if (level1.matchedSide) {
        const auto shank = result.kneeAnkleEvaluations.find(*level1.matchedSide);
        if (shank != result.kneeAnkleEvaluations.end() &&
            shank->second.relation == ConditionDirectionRelation::r2Horizontal) {
            const QString side = rawValue(*level1.matchedSide);
            result.pose = PoseValueLevel2Pose::standKnee;
            result.matchedCondition = QStringLiteral("CONDITION_DIRECTION.R2 (Knee to Ankle, ") + side +
                                      QStringLiteral("侧)");
            result.reason = side + QStringLiteral("侧 Knee to Ankle 为 R2 横向关系，且与 LEV1 匹配侧一致");
            return result;
        }
    }

    const auto left = level1.pairEvaluations.find(PoseBodySide::left);
    const auto right = level1.pairEvaluations.find(PoseBodySide::right);
    if (left != level1.pairEvaluations.end() && right != level1.pairEvaluations.end()) {
        const auto relationOf = [](const auto& entry) { return entry->second.relation; };
        std::optional<std::pair<PoseBodySide, PoseBodySide>> supportAndRaised;
        if (relationOf(left) == ConditionDirectionRelation::r1Vertical &&
            relationOf(right) == ConditionDirectionRelation::r3Upward)
            supportAndRaised = {PoseBodySide::left, PoseBodySide::right};
        else if (relationOf(right) == ConditionDirectionRelation::r1Vertical &&
                 relationOf(left) == ConditionDirectionRelation::r3Upward)
            supportAndRaised = {PoseBodySide::right, PoseBodySide::left};
        if (supportAndRaised) {
            const QString support = rawValue(supportAndRaised->first);
            const QString raised = rawValue(supportAndRaised->second);
            result.pose = PoseValueLevel2Pose::standTread;
            result.matchedCondition = QStringLiteral("Hip-Knee: Side ") + support.toUpper() +
                                      QStringLiteral(" (R1) 且 Side ") + raised.toUpper() + QStringLiteral(" (R3)");
            result.reason = support + QStringLiteral("侧 Hip-Knee 为 R1 纵向支撑，") + raised +
                            QStringLiteral("侧 Hip-Knee 为 R3 抬腿");
            return result;
        }
    }
    return straddleRule(joints, std::move(result));
}

PoseValueLevel2Result PoseValueLevel2Estimator::straddleRule(const platform::JointDictionary& joints,
                                                             PoseValueLevel2Result result)
{
    const auto leftAnkle = jointAt(joints, PoseBodySide::left, BodyPoint::ankle);
    const auto rightAnkle = jointAt(joints, PoseBodySide::right, BodyPoint::ankle);
    if (!leftAnkle || !rightAnkle || !leftAnkle->location || !rightAnkle->location) {
        result.pose = PoseValueLevel2Pose::stand;
        result.matchedCondition = QStringLiteral("无横跨判定条件");
        result.reason = QStringLiteral("缺少左右踝关节坐标");
        return result;
    }
    result.crossDirectionResult = evaluateConditionDirection(*leftAnkle, *rightAnkle);
    if (!result.crossDirectionResult) {
        result.pose = PoseValueLevel2Pose::stand;
        result.matchedCondition = QStringLiteral("横跨方向评估失败");
        result.reason = QStringLiteral("无法计算横跨方向矢量");
        return result;
    }
    const double dx = result.crossDirectionResult->vector.dx;
    if (dx <= 0.0) {
        result.pose = PoseValueLevel2Pose::stand;
        result.matchedCondition = QStringLiteral("横跨方向非向右");
        result.reason = QStringLiteral("横跨方向非向右（dx=") + printfFixed(dx, 3) + QStringLiteral("）");
        result.crossWidth = std::abs(dx);
        return result;
    }
    const auto leftHip = locationAt(joints, PoseBodySide::left, BodyPoint::hip);
    const auto rightHip = locationAt(joints, PoseBodySide::right, BodyPoint::hip);
    if (!leftHip || !rightHip) {
        result.pose = PoseValueLevel2Pose::stand;
        result.matchedCondition = QStringLiteral("缺少髋部坐标");
        result.reason = QStringLiteral("无法计算腰部宽度（缺少髋部坐标）");
        result.crossWidth = dx;
        return result;
    }
    const double hipWidth = std::abs(rightHip->x() - leftHip->x());
    const double crossWidth = std::abs(rightAnkle->location->x() - leftAnkle->location->x());
    const double threshold = 1.8 * hipWidth;
    result.hipWidth = hipWidth;
    result.crossWidth = crossWidth;
    // The reason quotes the threshold (1.8 × waist), not the waist itself. Decimal borders such as 0.18 against
    // 1.8 × 0.10 are compared with the same tolerance as the direction borders.
    if (crossWidth >= threshold - kBorderTolerance) {
        result.pose = PoseValueLevel2Pose::standWalk;
        result.matchedCondition = QStringLiteral("横跨方向向右且宽度 >= 1.8倍腰部宽度");
        result.reason = QStringLiteral("横跨宽度(") + printfFixed(crossWidth, 3) + QStringLiteral(") >= 1.8倍腰部宽度(") +
                        printfFixed(threshold, 3) + QStringLiteral(")");
        return result;
    }
    result.pose = PoseValueLevel2Pose::standBalance;
    result.matchedCondition = QStringLiteral("横跨方向向右但宽度 < 1.8倍腰部宽度");
    result.reason = QStringLiteral("横跨宽度(") + printfFixed(crossWidth, 3) + QStringLiteral(") < 1.8倍腰部宽度(") +
                    printfFixed(threshold, 3) + QStringLiteral(")");
    return result;
}

std::optional<PoseValueLevel2Result> PoseValueLevel2Estimator::sitRules(const platform::JointDictionary& joints,
                                                                        const std::optional<QStringList>& visionTags)
{
    // Squat: on both sides the hip sits closer to the ankle than the knee does.
    QStringList squatParts;
    for (const PoseBodySide side : kBodySides) {
        const auto hip = locationAt(joints, side, BodyPoint::hip);
        const auto knee = locationAt(joints, side, BodyPoint::knee);
        const auto ankle = locationAt(joints, side, BodyPoint::ankle);
        if (!hip || !knee || !ankle)
            break;
        const double hipAnkle = distance(*hip, *ankle);
        const double kneeAnkle = distance(*knee, *ankle);
        if (!(hipAnkle < kneeAnkle - kBorderTolerance))
            break;
        squatParts << (side == PoseBodySide::left ? QStringLiteral("L:") : QStringLiteral("R:")) +
                          printfFixed(hipAnkle, 3) + QLatin1Char('<') + printfFixed(kneeAnkle, 3);
    }
    if (squatParts.size() == 2) {
        return verdict(PoseValueLevel2Pose::sitSquat,
                             QStringLiteral("Hip→Ankle shorter than Knee→Ankle (both sides)"),
                             squatParts.join(QStringLiteral(", ")));
    }

    QStringList upkickSides;
    QStringList proneSides;
    for (const PoseBodySide side : kBodySides) {
        const auto ankle = locationAt(joints, side, BodyPoint::ankle);
        const auto rise = thighRise(joints, side);
        if (!ankle || !rise)
            continue;
        if (*rise >= 0.3 - kBorderTolerance && ankleAboveAny(joints, side, *ankle, {BodyPoint::eye, BodyPoint::ear}))
            upkickSides << rawValue(side);
        if (std::abs(*rise) <= 0.2 + kBorderTolerance &&
            ankleAboveAny(joints, side, *ankle, {BodyPoint::eye, BodyPoint::ear, BodyPoint::shoulder}))
            proneSides << rawValue(side);
    }
    if (!upkickSides.isEmpty()) {
        return verdict(PoseValueLevel2Pose::sitUpkick,
                             QStringLiteral("Ankle higher than eye/ear 且 Hip→Knee 上扬 (") + sideList(upkickSides) +
                                 QStringLiteral(")"),
                             QStringLiteral("满足上踢侧边: ") + sideList(upkickSides));
    }
    if (!proneSides.isEmpty()) {
        return verdict(PoseValueLevel2Pose::sitProne,
                             QStringLiteral("Ankle 高于眼/耳/肩 且 Hip→Knee 水平 (") + sideList(proneSides) +
                                 QStringLiteral(")"),
                             QStringLiteral("满足俯卧侧边: ") + sideList(proneSides));
    }

    for (const PoseBodySide side : kBodySides) {
        const auto elbow = locationAt(joints, side, BodyPoint::elbow);
        const auto hip = locationAt(joints, side, BodyPoint::hip);
        if (!elbow || !hip)
            continue;
        const double length = distance(*elbow, *hip);
        if (length > 0.0 && std::abs(hip->y() - elbow->y()) / length <= 0.2 + kBorderTolerance) {
            const QString name = rawValue(side);
            return verdict(PoseValueLevel2Pose::sitLay,
                                 QStringLiteral("Elbow→Hip 水平 (") + name + QStringLiteral("侧)"),
                                 name + QStringLiteral("侧 Elbow→Hip 水平关系"));
        }
    }

    if (hasReadingTag(visionTags)) {
        return verdict(PoseValueLevel2Pose::diverseLayread, QStringLiteral("Vision Tag 包含 book/material"),
                             QStringLiteral("Vision Tags: ") + visionTags->join(QStringLiteral(", ")));
    }
    return std::nullopt;
}

} // namespace lumaro::pose
