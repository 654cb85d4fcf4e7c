// SPDX-License-Identifier: GPL-3.0-or-later
// Finds faces in a picture: each as a box in the picture's pixels and the detector's score.
#pragma once

#include <QImage>
#include <QRectF>

#include <memory>
#include <vector>

namespace lumaro::platform {

struct FaceBox
{
    QRectF box;        // in the pixels of the image that was passed in
    float score = 0.f; // 0..1
};

// One detector per thread: implementations keep network state that is not safe to share. A null or empty
// image gives no faces. Boxes are ordered by score, best first.
class FaceDetector
{
public:
    virtual ~FaceDetector() = default;
    virtual std::vector<FaceBox> detect(const QImage& image) = 0;
};

// The best detector the installed models allow: YuNet from the models folder, else OpenCV's Haar cascade
// from the system's data, else nullptr (the reason is logged once per process).
std::unique_ptr<FaceDetector> makeFaceDetector();

} // namespace lumaro::platform
