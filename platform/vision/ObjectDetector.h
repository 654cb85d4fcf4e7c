// SPDX-License-Identifier: GPL-3.0-or-later
// Finds everyday objects in a picture (people, animals, vehicles, furniture…), each with a word and a box.
#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

#include <vector>

namespace lumaro::platform {

struct DetectedObject
{
    QString label; // snake_case ("person", "cell_phone", "potted_plant")
    QRectF box;    // in the pixels of the image that was passed in
    float score = 0.f;
};

struct ObjectDetections
{
    std::vector<DetectedObject> objects; // best first
    QString error;                       // empty on success
};

// One detector per thread. A null image gives an error, never a throw.
class ObjectDetector
{
public:
    virtual ~ObjectDetector() = default;
    virtual ObjectDetections detect(const QImage& image) = 0;
};

} // namespace lumaro::platform
