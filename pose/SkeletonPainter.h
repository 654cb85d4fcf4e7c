// SPDX-License-Identifier: GPL-3.0-or-later
// Draws a person's skeleton over their picture: the bones between located joints, the segments whose
// direction decided the verdicts, and the joints.
#pragma once

#include "pose/PersonPoseEstimator.h"

#include <QColor>
#include <QRectF>

#include <utility>
#include <vector>

class QPainter;

namespace lumaro::pose {

// Any thread that may paint (a QImage off the main thread is fine). The same drawing for the pose panel and
// the exported tiles, so a tile shows what the panel showed.
class SkeletonPainter
{
public:
    // A colour per person, repeating.
    static QColor colourFor(std::size_t person);
    // The segments (normalised, y upward) whose relation decided the verdicts shown.
    static std::vector<std::pair<QPointF, QPointF>> decidingSegments(const PersonPose& person);
    // `picture` is where the whole picture lies in the painter's coordinates; `scale` thickens the lines for
    // a large canvas (1 for a screen-sized one).
    static void paint(QPainter& painter, const PersonPose& person, const QRectF& picture,
                      const QColor& colour, double scale = 1.0);
};

} // namespace lumaro::pose
