// SPDX-License-Identifier: GPL-3.0-or-later
// Decides which sightings of the body-pose detector are people sure enough to judge, and which of their
// joints the pose rules may see.
#pragma once

#include "platform/pose/BodyPoseDetector.h"

#include <optional>

namespace lumaro::pose {

struct QualifiedPerson
{
    // Every joint of the sighting; only those sure enough keep a location, so the rules never reason about a
    // joint the detector guessed.
    platform::JointDictionary joints;
    QRectF box; // normalised, y upward
    float score = 0.0f;
    int locatedJoints = 0;
};

// Pure, any thread.
class PersonQualityFilter
{
public:
    // Chosen on real photos (see the .cpp).
    static constexpr float kJointFloor = 0.25f;
    static constexpr float kMinPersonScore = 0.2f;
    static constexpr int kMinLocatedJoints = 5;

    // nullopt when the sighting is too unsure, or shows too few joints, to be judged as a person.
    std::optional<QualifiedPerson> qualify(const platform::DetectedPerson& sighting) const;
};

} // namespace lumaro::pose
