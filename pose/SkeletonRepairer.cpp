// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/SkeletonRepairer.h"

#include <array>
#include <cmath>
#include <optional>

namespace lumaro::pose {

namespace {

struct Link
{
    const char* parent; // the body part nearer the trunk, without its side
    const char* child;
};

// Parents before children, so an exchange higher up is made before the links below it are judged.
constexpr std::array<Link, 5> kChains{{
    {"shoulder", "upLeg"},
    {"upLeg", "leg"},
    {"leg", "foot"},
    {"shoulder", "forearm"},
    {"forearm", "hand"},
}};

QString key(const char* side, const char* part)
{
    return QString::fromLatin1(side) + u'_' + QString::fromLatin1(part);
}

std::optional<QPointF> locationOf(const platform::JointDictionary& joints, const QString& name)
{
    const auto found = joints.constFind(name);
    return found == joints.constEnd() ? std::nullopt : found->location;
}

double distance(QPointF a, QPointF b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

void dropOutliers(platform::JointDictionary& joints, const QRectF& box, JointRepairs& repairs)
{
    const QRectF frame(0.0, 0.0, 1.0, 1.0);
    const QRectF near = box.adjusted(
        -box.width() * SkeletonRepairer::kBoxMargin, -box.height() * SkeletonRepairer::kBoxMargin,
        box.width() * SkeletonRepairer::kBoxMargin, box.height() * SkeletonRepairer::kBoxMargin);
    for (platform::JointSample& joint : joints) {
        if (!joint.location)
            continue;
        if (!frame.contains(*joint.location)) {
            joint.location.reset();
            repairs.insert(joint.name, JointRepair::outsideFrame);
        } else if (box.isValid() && !near.contains(*joint.location)) {
            joint.location.reset();
            repairs.insert(joint.name, JointRepair::outsideBox);
        }
    }
}

void exchange(platform::JointDictionary& joints, const QString& left, const QString& right,
              JointRepairs& repairs)
{
    platform::JointSample& a = joints[left];
    platform::JointSample& b = joints[right];
    std::swap(a.location, b.location);
    std::swap(a.confidence, b.confidence);
    repairs.insert(left, JointRepair::swappedSides);
    repairs.insert(right, JointRepair::swappedSides);
}

} // namespace

QString rawValue(JointRepair repair)
{
    switch (repair) {
    case JointRepair::outsideFrame:
        return QStringLiteral("outsideFrame");
    case JointRepair::outsideBox:
        return QStringLiteral("outsideBox");
    case JointRepair::swappedSides:
        return QStringLiteral("swappedSides");
    }
    return {};
}

JointRepairs SkeletonRepairer::repair(platform::JointDictionary& joints, const QRectF& box) const
{
    JointRepairs repairs;
    dropOutliers(joints, box, repairs);
    for (const Link& link : kChains) {
        const auto leftParent = locationOf(joints, key("left", link.parent));
        const auto rightParent = locationOf(joints, key("right", link.parent));
        const auto leftChild = locationOf(joints, key("left", link.child));
        const auto rightChild = locationOf(joints, key("right", link.child));
        if (!leftParent || !rightParent || !leftChild || !rightChild)
            continue;
        const double straight = distance(*leftParent, *leftChild) + distance(*rightParent, *rightChild);
        const double crossed = distance(*leftParent, *rightChild) + distance(*rightParent, *leftChild);
        if (crossed < kSwapRatio * straight)
            exchange(joints, key("left", link.child), key("right", link.child), repairs);
    }
    return repairs;
}

} // namespace lumaro::pose
