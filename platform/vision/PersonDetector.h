// SPDX-License-Identifier: GPL-3.0-or-later
// Finds every person in a picture, seen from any side, each with a box, a score and 17 body keypoints.
#pragma once

#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <array>
#include <memory>
#include <vector>

namespace lumaro::platform {

// COCO order: nose, left eye, right eye, left ear, right ear, left/right shoulder, elbow, wrist, hip, knee,
// ankle ("left" is the subject's left).
constexpr int kBodyKeypointCount = 17;

struct BodyKeypoint
{
    QPointF position; // in the pixels of the image that was passed in
    float score = 0.f;
};

struct PersonDetection
{
    QRectF box;        // in the pixels of the image that was passed in
    float score = 0.f; // instance score, 0..1
    std::array<BodyKeypoint, kBodyKeypointCount> keypoints;
};

struct PersonDetections
{
    std::vector<PersonDetection> people; // best first
    QString error;                       // empty on success
};

// One detector per thread (network state is not shared). A null image gives an error, never a throw.
class PersonDetector
{
public:
    virtual ~PersonDetector() = default;
    virtual PersonDetections detect(const QImage& image) = 0;
};

} // namespace lumaro::platform
