// SPDX-License-Identifier: GPL-3.0-or-later
// Decides which sightings of the body-pose detector are people sure enough to judge, and which of their
// joints the pose rules may see.
#pragma once

#include "platform/pose/BodyPoseDetector.h"
#include "pose/SkeletonRepairer.h"

#include <optional>

namespace lumaro::pose {

struct QualifiedPerson
{
    // Every joint of the sighting; only those sure enough keep a location, so the rules never reason about a
    // joint the detector guessed.
    platform::JointDictionary joints;
    JointRepairs repairs; // the joints the skeleton's geometry put right
    QRectF box;           // normalised, y upward
    float score = 0.0f;
    int locatedJoints = 0;
};

// Pure, any thread.
class PersonQualityFilter
{
public:
    // Chosen on real photos: joints in view scored 0.38–0.95 (messi5, basketball1, person.jpg's back view),
    // joints out of the frame or hidden 0.01–0.28 (astronaut's elbows and legs, the cut-off second player).
    static constexpr float kJointFloor = 0.3f;
    static constexpr float kMinPersonScore = 0.2f;
    static constexpr int kMinLocatedJoints = 5;

    // nullopt when the sighting is too unsure, or shows too few joints once repaired, to be judged as a
    // person.
    std::optional<QualifiedPerson> qualify(const platform::DetectedPerson& sighting) const;
};

} // namespace lumaro::pose
