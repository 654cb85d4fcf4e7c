// SPDX-License-Identifier: GPL-3.0-or-later
// The human body-pose detector: every person in a picture as a box, a score and a dictionary of joints.
#pragma once

#include "platform/JointSample.h"

#include <QImage>
#include <QRectF>

#include <optional>
#include <vector>

namespace lumaro::platform {

struct DetectedPerson
{
    // Every joint of the model, each with its location and the detector's own score: deciding which joints
    // are sure enough to count is the caller's business (the pose module's quality filter).
    JointDictionary joints;
    // The person's box, normalised like the joints (0–1, y upward).
    QRectF box;
    // How sure the detector is that this is a person at all, 0–1.
    float score = 0.0f;
};

struct BodyPoseDetection
{
    std::vector<DetectedPerson> people; // surest first
    // Each part is in milliseconds, for the PERF- lines and the benchmarks.
    double wholePictureMs = 0.0;
    double tilesMs = 0.0; // 0 when the picture was not searched in tiles
    int passes = 0;       // network runs made
};

// Implementations say which threads may call them.
class BodyPoseDetector
{
public:
    virtual ~BodyPoseDetector() = default;
    // `image` upright (EXIF orientation applied). nullopt only when the image cannot be analysed at all
    // (null, or the backend failed); a picture with nobody in it is an empty list.
    virtual std::optional<BodyPoseDetection> detect(const QImage& image) = 0;
};

} // namespace lumaro::platform
