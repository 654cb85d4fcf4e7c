// SPDX-License-Identifier: GPL-3.0-or-later
// One body joint as the body-pose detector delivers it, and a person's joints keyed by the joint's name.
#pragma once

#include <QMap>
#include <QPointF>
#include <QString>

#include <optional>

namespace lumaro::platform {

// Locations are normalised to 0–1 on both axes of the picture with y growing upward (origin at the lower-left
// corner), with no aspect correction. A joint the detector is unsure of keeps its confidence but has no location.
struct JointSample
{
    QString name;
    std::optional<QPointF> location;
    float confidence = 0.0f;
};

// Keys such as "left_upLeg" (hip), "left_leg" (knee), "left_foot" (ankle), "left_forearm" (elbow), "left_eye",
// "left_ear", "left_shoulder" and their right-hand twins; left and right are the subject's own.
using JointDictionary = QMap<QString, JointSample>;

} // namespace lumaro::platform
