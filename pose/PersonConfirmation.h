// SPDX-License-Identifier: GPL-3.0-or-later
// Whether a sighting of the body-pose network is a person: a sure one stands alone, a weak one only when a
// face or the object detector's person box agrees with it.
#pragma once

#include "platform/pose/BodyPoseDetector.h"

#include <QRectF>
#include <QString>

#include <vector>

namespace lumaro::pose {

enum class PersonEvidence
{
    sighting,       // the pose network alone was sure enough
    face,           // a face lies on the sighting's head
    objectDetector, // the object detector saw a person in the same place
};

// "sighting", "face", "objectDetector".
QString rawValue(PersonEvidence evidence);

// Pure, any thread. Boxes are normalised like the joints (0–1, y upward).
class PersonConfirmation
{
public:
    // At or above this instance score the pose network is trusted alone. Below it it also names animal heads
    // and drawn figures (a zebra's head 0.27, a pencil drawing 0.28), but also real people it sees badly: a
    // back view against the light, small walkers far off.
    static constexpr float kSureSighting = 0.3f;
    // How much of the sighting's box the object detector's person box must cover.
    static constexpr double kObjectCover = 0.5;

    static bool isSure(const platform::DetectedPerson& sighting) { return sighting.score >= kSureSighting; }
    // The evidence that the sighting is a person, or nullopt when a weak sighting finds none.
    static std::optional<PersonEvidence> confirm(const platform::DetectedPerson& sighting,
                                                 const std::vector<QRectF>& faces,
                                                 const std::vector<QRectF>& objectPeople);
    // A face on the sighting's head: its centre inside the person's box, and a located eye, nose or ear of
    // the sighting inside the face (grown by half its size, for a head turned away).
    static bool faceFits(const platform::DetectedPerson& sighting, const QRectF& face);
    static bool objectFits(const platform::DetectedPerson& sighting, const QRectF& objectPerson);
};

} // namespace lumaro::pose
