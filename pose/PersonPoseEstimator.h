// SPDX-License-Identifier: GPL-3.0-or-later
// Names one person's pose: level 1, then level 2 when it applies, and the action the verdict stands for.
#pragma once

#include "pose/PoseAction.h"
#include "pose/PoseValueLevel1Estimator.h"
#include "pose/PoseValueLevel2Estimator.h"

#include <QStringList>

#include <optional>

namespace lumaro::pose {

struct PersonPose
{
    platform::JointDictionary joints;
    PoseValueLevel1Result level1;
    std::optional<PoseValueLevel2Result> level2; // shown when present; otherwise level 1 stands
    PoseAction action = PoseAction::diverse;

    // The verdict's raw value as shown: level 2's when there is one, else level 1's.
    QString verdict() const;
    // The reason shown beside the verdict: level 2's, else level 1's own (empty when level 1 decided).
    QString reason() const;
    QString matchedCondition() const;
};

// Pure, any thread.
class PersonPoseEstimator
{
public:
    PersonPose evaluate(const platform::JointDictionary& joints, const std::optional<QStringList>& visionTags) const;
};

} // namespace lumaro::pose
