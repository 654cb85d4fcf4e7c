// SPDX-License-Identifier: GPL-3.0-or-later
// A person's face in the frame: how big it is and where it sits against the rule of thirds; faces matched to
// the people of a picture.
#pragma once

#include "platform/pose/BodyPoseDetector.h"

#include <QPointF>
#include <QRectF>
#include <QString>

#include <optional>
#include <vector>

namespace lumaro::pose {

struct FaceFacts
{
    QRectF box;             // normalised, y upward
    float score = 0.0f;     // the face detector's
    double sizeShare = 0.0; // the face's part of the picture's area
    int column = 0;         // the third it lies in: 0 left, 1 centre, 2 right
    int row = 0;            // 0 top, 1 middle, 2 bottom
    // The crossing of two thirds lines nearest to the face's centre ("upperLeft", "upperRight", "lowerLeft",
    // "lowerRight") and how far it is, as a share of the picture's diagonal.
    QString powerPoint;
    double powerPointDistance = 0.0;
    bool onPowerPoint = false; // within kPowerPointReach
};

// Pure, any thread.
class FaceFraming
{
public:
    // A twelfth of the diagonal: a quarter of a third's cell each way, what a photographer still calls "on
    // the third".
    static constexpr double kPowerPointReach = 1.0 / 12.0;

    // `face` normalised, y upward.
    static FaceFacts describe(const QRectF& face, float score);
    // For each person (in order), the index into `faces` of their face, or -1. A face goes to at most one
    // person: the one whose head joints lie nearest to its centre among those it fits (see
    // PersonConfirmation::faceFits); surer faces choose first.
    static std::vector<int> match(const std::vector<platform::DetectedPerson>& people,
                                  const std::vector<std::pair<QRectF, float>>& faces);
};

} // namespace lumaro::pose
