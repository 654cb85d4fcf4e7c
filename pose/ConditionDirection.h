// SPDX-License-Identifier: GPL-3.0-or-later
// Whether the segment from joint A to joint B hangs down, lies sideways or rises: the one geometric question
// every pose naming rule asks.
#pragma once

#include "platform/JointSample.h"

#include <QPointF>
#include <QString>

#include <optional>

namespace lumaro::pose {

enum class ConditionDirectionRelation {
    r1Vertical,   // A clearly above B and B inside the downward cone
    r2Horizontal, // about the same height, or B lower but outside the cone
    r3Upward,     // B clearly higher than A
};

QString rawValue(ConditionDirectionRelation relation);

struct DirectionVector
{
    double dx = 0.0;
    double dy = 0.0;
};

struct ConditionDirectionResult
{
    ConditionDirectionRelation relation = ConditionDirectionRelation::r2Horizontal;
    QString pointAName;
    QString pointBName;
    QPointF pointA;
    QPointF pointB;
    DirectionVector vector;
    double vectorLength = 0.0;
    double angleToDownward = 0.0; // degrees between the vector and (0, -1), 0–180
    double combinedConfidence = 0.0;
    double confidenceA = 0.0;
    double confidenceB = 0.0;
    QString reason;
};

// The cone and height threshold both rule layers use.
inline constexpr double kPoseConeAngleDegrees = 40.0;
inline constexpr double kPoseHeightThreshold = 0.02;
// How far a measured quantity may sit beside a border and still count as on it.
inline constexpr double kBorderTolerance = 1e-9;

// Pure, any thread. No result when either location is absent or the two points coincide. Confidences only
// feed combinedConfidence (clamped to 0–1); they never change the verdict. The borders: ΔY equal to the
// threshold is "height close", an angle equal to the cone is inside it.
std::optional<ConditionDirectionResult> evaluateConditionDirection(const platform::JointSample& a,
                                                                   const platform::JointSample& b,
                                                                   double coneAngleDegrees = kPoseConeAngleDegrees,
                                                                   double heightThreshold = kPoseHeightThreshold);

} // namespace lumaro::pose
