// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PersonConfirmation.h"

#include <algorithm>
#include <array>

namespace lumaro::pose {

namespace {

constexpr std::array kHeadJoints{"nose", "left_eye", "right_eye", "left_ear", "right_ear"};
// A head joint as sure as the quality filter wants any joint to be.
constexpr float kSureJoint = 0.3f;

double area(const QRectF& box)
{
    return std::max(0.0, box.width()) * std::max(0.0, box.height());
}

} // namespace

QString rawValue(PersonEvidence evidence)
{
    switch (evidence) {
    case PersonEvidence::sighting:
        return QStringLiteral("sighting");
    case PersonEvidence::face:
        return QStringLiteral("face");
    case PersonEvidence::objectDetector:
        return QStringLiteral("objectDetector");
    }
    return {};
}

bool PersonConfirmation::faceFits(const platform::DetectedPerson& sighting, const QRectF& face)
{
    if (!sighting.box.contains(face.center()))
        return false;
    const QRectF around =
        face.adjusted(-face.width() / 2, -face.height() / 2, face.width() / 2, face.height() / 2);
    return std::any_of(kHeadJoints.begin(), kHeadJoints.end(), [&](const char* key) {
        const platform::JointSample joint = sighting.joints.value(QString::fromLatin1(key));
        return joint.location && joint.confidence >= kSureJoint && around.contains(*joint.location);
    });
}

bool PersonConfirmation::objectFits(const platform::DetectedPerson& sighting, const QRectF& objectPerson)
{
    const double own = area(sighting.box);
    return own > 0.0 && area(sighting.box.intersected(objectPerson)) / own >= kObjectCover;
}

std::optional<PersonEvidence> PersonConfirmation::confirm(const platform::DetectedPerson& sighting,
                                                          const std::vector<QRectF>& faces,
                                                          const std::vector<QRectF>& objectPeople)
{
    if (isSure(sighting))
        return PersonEvidence::sighting;
    if (std::any_of(faces.begin(), faces.end(), [&](const QRectF& face) { return faceFits(sighting, face); }))
        return PersonEvidence::face;
    if (std::any_of(objectPeople.begin(), objectPeople.end(),
                    [&](const QRectF& box) { return objectFits(sighting, box); }))
        return PersonEvidence::objectDetector;
    return std::nullopt;
}

} // namespace lumaro::pose
