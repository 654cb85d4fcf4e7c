// SPDX-License-Identifier: GPL-3.0-or-later
// The subject's two sides and the joint keys the pose rules read on each.
#pragma once

#include "platform/JointSample.h"

#include <QString>

#include <array>
#include <optional>

namespace lumaro::pose {

// Sides are always tried left first; containers keyed by side iterate in this order.
enum class PoseBodySide { left, right };

inline constexpr std::array<PoseBodySide, 2> kBodySides{PoseBodySide::left, PoseBodySide::right};

enum class BodyPoint { hip, knee, ankle, elbow, eye, ear, shoulder };

QString rawValue(PoseBodySide side);
// "left_upLeg", "right_leg", "left_foot", …
QString jointKey(PoseBodySide side, BodyPoint point);

// The joint's sample when its key is in the dictionary, located or not.
std::optional<platform::JointSample> jointAt(const platform::JointDictionary& joints, PoseBodySide side,
                                             BodyPoint point);
// The joint's location only when the key is present and located; a key without a location counts as missing.
std::optional<QPointF> locationAt(const platform::JointDictionary& joints, PoseBodySide side, BodyPoint point);

} // namespace lumaro::pose
