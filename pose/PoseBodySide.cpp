// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PoseBodySide.h"

namespace lumaro::pose {

QString rawValue(PoseBodySide side)
{
    return side == PoseBodySide::left ? QStringLiteral("left") : QStringLiteral("right");
}

QString jointKey(PoseBodySide side, BodyPoint point)
{
    const QString prefix = rawValue(side) + QLatin1Char('_');
    switch (point) {
    case BodyPoint::hip:
        return prefix + QStringLiteral("upLeg");
    case BodyPoint::knee:
        return prefix + QStringLiteral("leg");
    case BodyPoint::ankle:
        return prefix + QStringLiteral("foot");
    case BodyPoint::elbow:
        return prefix + QStringLiteral("forearm");
    case BodyPoint::eye:
        return prefix + QStringLiteral("eye");
    case BodyPoint::ear:
        return prefix + QStringLiteral("ear");
    case BodyPoint::shoulder:
        return prefix + QStringLiteral("shoulder");
    }
    return prefix;
}

std::optional<platform::JointSample> jointAt(const platform::JointDictionary& joints, PoseBodySide side,
                                             BodyPoint point)
{
    const auto found = joints.constFind(jointKey(side, point));
    if (found == joints.constEnd())
        return std::nullopt;
    return *found;
}

std::optional<QPointF> locationAt(const platform::JointDictionary& joints, PoseBodySide side, BodyPoint point)
{
    const auto joint = jointAt(joints, side, point);
    if (!joint)
        return std::nullopt;
    return joint->location;
}

} // namespace lumaro::pose
