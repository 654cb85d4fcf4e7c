// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/SkeletonPainter.h"

#include <QPainter>

#include <array>

namespace lumaro::pose {

namespace {

constexpr std::array<std::pair<const char*, const char*>, 14> kBones{{
    {"left_shoulder", "right_shoulder"},
    {"left_shoulder", "left_forearm"},
    {"left_forearm", "left_hand"},
    {"right_shoulder", "right_forearm"},
    {"right_forearm", "right_hand"},
    {"left_shoulder", "left_upLeg"},
    {"right_shoulder", "right_upLeg"},
    {"left_upLeg", "right_upLeg"},
    {"left_upLeg", "left_leg"},
    {"left_leg", "left_foot"},
    {"right_upLeg", "right_leg"},
    {"right_leg", "right_foot"},
    {"left_eye", "right_eye"},
    {"left_ear", "right_ear"},
}};

const std::array<QColor, 5> kPersonColours{QColor(0, 200, 255), QColor(255, 170, 0), QColor(120, 230, 90),
                                           QColor(255, 90, 200), QColor(240, 240, 80)};

} // namespace

QColor SkeletonPainter::colourFor(std::size_t person)
{
    return kPersonColours[person % kPersonColours.size()];
}

std::vector<std::pair<QPointF, QPointF>> SkeletonPainter::decidingSegments(const PersonPose& person)
{
    std::vector<std::pair<QPointF, QPointF>> segments;
    if (person.level1.matchedDirection)
        segments.emplace_back(person.level1.matchedDirection->pointA, person.level1.matchedDirection->pointB);
    if (!person.level2)
        return segments;
    const PoseValueLevel2Result& second = *person.level2;
    if (second.pose == PoseValueLevel2Pose::standKnee && person.level1.matchedSide) {
        const auto shank = second.kneeAnkleEvaluations.find(*person.level1.matchedSide);
        if (shank != second.kneeAnkleEvaluations.end())
            segments.emplace_back(shank->second.pointA, shank->second.pointB);
    }
    if (second.pose == PoseValueLevel2Pose::standTread) {
        for (const auto& [side, thigh] : person.level1.pairEvaluations)
            segments.emplace_back(thigh.pointA, thigh.pointB);
    }
    if (second.crossDirectionResult)
        segments.emplace_back(second.crossDirectionResult->pointA, second.crossDirectionResult->pointB);
    return segments;
}

void SkeletonPainter::paint(QPainter& painter, const PersonPose& person, const QRectF& picture,
                            const QColor& colour, double scale)
{
    const auto at = [&picture](QPointF normalised) {
        return QPointF(picture.left() + normalised.x() * picture.width(),
                       picture.top() + (1.0 - normalised.y()) * picture.height());
    };
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 1.5 * scale));
    for (const auto& [from, to] : kBones) {
        const auto a = person.joints.value(QString::fromLatin1(from)).location;
        const auto b = person.joints.value(QString::fromLatin1(to)).location;
        if (a && b)
            painter.drawLine(at(*a), at(*b));
    }
    painter.setPen(QPen(colour.lighter(130), 5.0 * scale, Qt::SolidLine, Qt::RoundCap));
    for (const auto& [a, b] : decidingSegments(person))
        painter.drawLine(at(a), at(b));
    painter.setPen(QPen(Qt::black, 1.0 * scale));
    painter.setBrush(colour);
    for (const platform::JointSample& joint : person.joints) {
        if (joint.location)
            painter.drawEllipse(at(*joint.location), 3.5 * scale, 3.5 * scale);
    }
    painter.restore();
}

} // namespace lumaro::pose
