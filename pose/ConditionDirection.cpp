// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/ConditionDirection.h"

#include "pose/ReasonFormat.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumaro::pose {

QString rawValue(ConditionDirectionRelation relation)
{
    switch (relation) {
    case ConditionDirectionRelation::r1Vertical:
        return QStringLiteral("CONDITION_DIRECTION.R1");
    case ConditionDirectionRelation::r2Horizontal:
        return QStringLiteral("CONDITION_DIRECTION.R2");
    case ConditionDirectionRelation::r3Upward:
        return QStringLiteral("CONDITION_DIRECTION.R3");
    }
    return {};
}

std::optional<ConditionDirectionResult> evaluateConditionDirection(const platform::JointSample& a,
                                                                   const platform::JointSample& b,
                                                                   double coneAngleDegrees, double heightThreshold)
{
    if (!a.location || !b.location)
        return std::nullopt;
    const QPointF pointA = *a.location;
    const QPointF pointB = *b.location;
    const double dx = pointB.x() - pointA.x();
    const double dy = pointB.y() - pointA.y();
    const double length = std::hypot(dx, dy);
    if (!(length > 0.0))
        return std::nullopt;

    // Clamped because rounding can push a unit vector's component a hair past ±1, where acos gives NaN.
    const double cosine = std::max(std::min(-(dy / length), 1.0), -1.0);
    const double angle = std::acos(cosine) * 180.0 / std::numbers::pi;
    const double deltaY = pointA.y() - pointB.y();

    // Coordinates such as 0.52 and 0.50 are not exact in binary, so their difference lands a hair beside 0.02;
    // a border case must not flip on that last bit, hence the tolerance on every comparison with a border.
    const bool clearlyHigher = deltaY > heightThreshold + kBorderTolerance;
    const bool clearlyLower = deltaY < -heightThreshold - kBorderTolerance;
    const bool insideCone = angle <= coneAngleDegrees + kBorderTolerance;

    ConditionDirectionResult result;
    if (clearlyHigher && insideCone) {
        result.relation = ConditionDirectionRelation::r1Vertical;
        result.reason = QStringLiteral("A 高于 B，且向量位于向下 ") + shortestDecimal(coneAngleDegrees) +
                        QStringLiteral("° 锥内");
    } else if (clearlyLower) {
        // Every clearly rising vector is upward, however slanted: no angle test here.
        result.relation = ConditionDirectionRelation::r3Upward;
        result.reason = QStringLiteral("A 低于 B，B 明显更高（ΔY=") + printfFixed(-deltaY, 3) + QStringLiteral(")");
    } else if (!clearlyHigher) {
        result.relation = ConditionDirectionRelation::r2Horizontal;
        result.reason = QStringLiteral("A 与 B 高度接近（ΔY=") + printfFixed(deltaY, 3) +
                        QStringLiteral(")，判定为水平侧向");
    } else {
        result.relation = ConditionDirectionRelation::r2Horizontal;
        result.reason = QStringLiteral("向量偏离垂直锥角（") + printfFixed(angle, 1) + QStringLiteral("°）");
    }
    result.pointAName = a.name;
    result.pointBName = b.name;
    result.pointA = pointA;
    result.pointB = pointB;
    result.vector = {dx, dy};
    result.vectorLength = length;
    result.angleToDownward = angle;
    result.confidenceA = double(a.confidence);
    result.confidenceB = double(b.confidence);
    result.combinedConfidence = std::clamp((result.confidenceA + result.confidenceB) / 2.0, 0.0, 1.0);
    return result;
}

} // namespace lumaro::pose
