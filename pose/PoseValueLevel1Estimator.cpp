// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PoseValueLevel1Estimator.h"

#include <algorithm>
#include <vector>

namespace lumaro::pose {

QString rawValue(PoseValueLevel1Pose pose)
{
    switch (pose) {
    case PoseValueLevel1Pose::stand:
        return QStringLiteral("POSE_STAND");
    case PoseValueLevel1Pose::sit:
        return QStringLiteral("POSE_SIT");
    case PoseValueLevel1Pose::diverse:
        return QStringLiteral("POSE_DIVERSE");
    }
    return {};
}

std::vector<HipKneePair> PoseValueLevel1Estimator::hipKneePairs(const platform::JointDictionary& joints)
{
    std::vector<HipKneePair> pairs;
    for (const PoseBodySide side : kBodySides) {
        const auto hip = jointAt(joints, side, BodyPoint::hip);
        const auto knee = jointAt(joints, side, BodyPoint::knee);
        if (hip && knee)
            pairs.push_back({side, *hip, *knee});
    }
    return pairs;
}

PoseValueLevel1Result PoseValueLevel1Estimator::evaluate(const platform::JointDictionary& joints) const
{
    PoseValueLevel1Result result;
    const std::vector<HipKneePair> pairs = hipKneePairs(joints);
    if (pairs.empty()) {
        result.reason = QStringLiteral("缺少 Hip / Knee 成对坐标");
        return result;
    }
    for (const HipKneePair& pair : pairs) {
        if (auto direction = evaluateConditionDirection(pair.hip, pair.knee))
            result.pairEvaluations.emplace(pair.side, std::move(*direction));
    }
    if (result.pairEvaluations.empty()) {
        result.reason = QStringLiteral("Hip / Knee 坐标缺失（无有效矢量）");
        return result;
    }

    std::vector<std::pair<PoseBodySide, ConditionDirectionResult>> ranked(result.pairEvaluations.begin(),
                                                                          result.pairEvaluations.end());
    // Stable, so that a full tie keeps the side order of the dictionary: left first.
    std::stable_sort(ranked.begin(), ranked.end(), [](const auto& one, const auto& other) {
        if (one.second.relation != other.second.relation)
            return one.second.relation < other.second.relation;
        return one.second.combinedConfidence > other.second.combinedConfidence;
    });
    if (ranked.empty()) {
        result.reason = QStringLiteral("未得到可靠的方向判定");
        return result;
    }
    const auto& [side, direction] = ranked.front();
    result.pose = direction.relation == ConditionDirectionRelation::r1Vertical ? PoseValueLevel1Pose::stand
                                                                                : PoseValueLevel1Pose::sit;
    result.matchedSide = side;
    result.matchedDirection = direction;
    return result;
}

} // namespace lumaro::pose
