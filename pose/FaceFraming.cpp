// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/FaceFraming.h"

#include "pose/PersonConfirmation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>

namespace lumaro::pose {

namespace {

constexpr std::array kHeadJoints{"nose", "left_eye", "right_eye", "left_ear", "right_ear"};

// Distance from the face's centre to the mean of the person's located head joints; the box's top centre
// when none is located.
double headDistance(const platform::DetectedPerson& person, const QPointF& centre)
{
    QPointF sum;
    int count = 0;
    for (const char* key : kHeadJoints) {
        const platform::JointSample joint = person.joints.value(QString::fromLatin1(key));
        if (joint.location) {
            sum += *joint.location;
            ++count;
        }
    }
    const QPointF head = count > 0 ? sum / count : QPointF(person.box.center().x(), person.box.bottom());
    return std::hypot(head.x() - centre.x(), head.y() - centre.y());
}

} // namespace

FaceFacts FaceFraming::describe(const QRectF& face, float score)
{
    FaceFacts facts;
    facts.box = face;
    facts.score = score;
    facts.sizeShare = std::clamp(face.width() * face.height(), 0.0, 1.0);
    const QPointF centre = face.center();
    const double fromTop = 1.0 - centre.y(); // the box is y upward, thirds are named from the top
    facts.column = std::clamp(int(centre.x() * 3.0), 0, 2);
    facts.row = std::clamp(int(fromTop * 3.0), 0, 2);
    const bool left = centre.x() < 0.5;
    const bool upper = fromTop < 0.5;
    facts.powerPoint =
        QString::fromLatin1(upper ? "upper" : "lower") + QString::fromLatin1(left ? "Left" : "Right");
    const double dx = centre.x() - (left ? 1.0 / 3.0 : 2.0 / 3.0);
    const double dy = fromTop - (upper ? 1.0 / 3.0 : 2.0 / 3.0);
    facts.powerPointDistance = std::hypot(dx, dy) / std::sqrt(2.0);
    facts.onPowerPoint = facts.powerPointDistance <= kPowerPointReach;
    return facts;
}

std::vector<int> FaceFraming::match(const std::vector<platform::DetectedPerson>& people,
                                    const std::vector<std::pair<QRectF, float>>& faces)
{
    std::vector<int> faceOf(people.size(), -1);
    std::vector<std::size_t> order(faces.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return faces[a].second > faces[b].second; });
    for (const std::size_t f : order) {
        int best = -1;
        double bestDistance = std::numeric_limits<double>::max();
        for (std::size_t p = 0; p < people.size(); ++p) {
            if (faceOf[p] >= 0 || !PersonConfirmation::faceFits(people[p], faces[f].first))
                continue;
            const double distance = headDistance(people[p], faces[f].first.center());
            if (distance < bestDistance) {
                bestDistance = distance;
                best = int(p);
            }
        }
        if (best >= 0)
            faceOf[std::size_t(best)] = int(f);
    }
    return faceOf;
}

} // namespace lumaro::pose
