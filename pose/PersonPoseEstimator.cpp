// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PersonPoseEstimator.h"

namespace lumaro::pose {

QString PersonPose::verdict() const
{
    return level2 ? rawValue(level2->pose) : rawValue(level1.pose);
}

QString PersonPose::reason() const
{
    if (level2)
        return level2->reason;
    if (level1.reason)
        return *level1.reason;
    if (level1.matchedDirection)
        return level1.matchedDirection->reason;
    return {};
}

QString PersonPose::matchedCondition() const
{
    if (level2)
        return level2->matchedCondition;
    if (level1.matchedDirection)
        return rawValue(level1.matchedDirection->relation) + QStringLiteral(" (Hip to Knee)");
    return {};
}

PersonPose PersonPoseEstimator::evaluate(const platform::JointDictionary& joints,
                                         const std::optional<QStringList>& visionTags) const
{
    PersonPose person;
    person.joints = joints;
    person.level1 = PoseValueLevel1Estimator().evaluate(joints);
    person.level2 = PoseValueLevel2Estimator().evaluate(person.level1, joints, visionTags);
    person.action = person.level2 ? poseActionFor(person.level2->pose) : poseActionFor(person.level1.pose);
    return person;
}

} // namespace lumaro::pose
