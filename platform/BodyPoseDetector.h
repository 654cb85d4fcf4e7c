// SPDX-License-Identifier: GPL-3.0-or-later
// The human body-pose detector: every person in a picture as a dictionary of joints.
#pragma once

#include "platform/JointSample.h"

#include <QImage>
#include <QRectF>
#include <QSize>
#include <QString>

#include <optional>
#include <vector>

namespace lumaro::platform {

struct DetectedPerson
{
    JointDictionary joints;
    // The part of the picture the person was looked for in, normalised like the joints (y upward).
    QRectF searchRegion;
};

struct BodyPoseDetection
{
    std::vector<DetectedPerson> people;
    // Each part is in milliseconds, for the PERF- lines and the benchmarks.
    double personSearchMs = 0.0;
    double keypointMs = 0.0;
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
