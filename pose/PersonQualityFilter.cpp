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
        if (joint.location)
            ++person.locatedJoints;
        person.joints.insert(joint.name, joint);
    }
    if (person.locatedJoints < kMinLocatedJoints)
        return std::nullopt;
    return person;
}

} // namespace lumaro::pose
