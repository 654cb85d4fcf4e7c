// SPDX-License-Identifier: GPL-3.0-or-later
// The first layer of pose naming: stand, sit or diverse, judged from the two thighs (hip → knee) alone.
#pragma once

#include "pose/ConditionDirection.h"
#include "pose/PoseBodySide.h"

#include <map>
#include <optional>

namespace lumaro::pose {

enum class PoseValueLevel1Pose { stand, sit, diverse };

QString rawValue(PoseValueLevel1Pose pose);

struct HipKneePair
{
    PoseBodySide side = PoseBodySide::left;
    platform::JointSample hip;
    platform::JointSample knee;
};

struct PoseValueLevel1Result
{
    PoseValueLevel1Pose pose = PoseValueLevel1Pose::diverse;
    std::optional<PoseBodySide> matchedSide;
    std::optional<ConditionDirectionResult> matchedDirection;
    std::map<PoseBodySide, ConditionDirectionResult> pairEvaluations; // left first
    std::optional<QString> reason; // only when no verdict could be reached
};

// Pure, any thread. One vertical thigh is enough for stand: a vertical relation outranks a horizontal or
// rising one whatever the confidences; between equal relations the higher combined confidence decides, and on
// a full tie the left side. No thighs at all, or only joints without locations, give diverse with a reason.
class PoseValueLevel1Estimator
{
public:
    static std::vector<HipKneePair> hipKneePairs(const platform::JointDictionary& joints);
    PoseValueLevel1Result evaluate(const platform::JointDictionary& joints) const;
};

} // namespace lumaro::pose
