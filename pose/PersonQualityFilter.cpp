// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PersonQualityFilter.h"

namespace lumaro::pose {

std::optional<QualifiedPerson> PersonQualityFilter::qualify(const platform::DetectedPerson& sighting) const
{
    if (sighting.score < kMinPersonScore)
        return std::nullopt;
    QualifiedPerson person;
    person.box = sighting.box;
    person.score = sighting.score;
    for (platform::JointSample joint : sighting.joints) {
        if (joint.confidence < kJointFloor)
            joint.location.reset();
        person.joints.insert(joint.name, joint);
    }
    person.repairs = SkeletonRepairer().repair(person.joints, person.box);
    for (const platform::JointSample& joint : person.joints)
        person.locatedJoints += joint.location ? 1 : 0;
    if (person.locatedJoints < kMinLocatedJoints)
        return std::nullopt;
    return person;
}

} // namespace lumaro::pose
