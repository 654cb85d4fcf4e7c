// SPDX-License-Identifier: GPL-3.0-or-later
// Finds faces in a picture: each as a box in the picture's pixels and the detector's score.
#pragma once

#include <QImage>
#include <QRectF>
#include <QString>

#include <memory>
#include <vector>

namespace lumaro::platform {

struct FaceBox
{
    QRectF box;        // in the pixels of the image that was passed in
    float score = 0.f; // 0..1
};

struct FaceDetection
{
    std::vector<FaceBox> faces; // best score first
    QString error;              // empty on success; set when the detector could not look at the picture
};

// One detector per thread: implementations keep network state that is not safe to share. A null or empty
// image gives no faces; whatever the picture, detect() reports a failure, never throws.
class FaceDetector
{
public:
    virtual ~FaceDetector() = default;
    virtual FaceDetection detect(const QImage& image) = 0;
};

// The best detector the installed models allow: YuNet from the models folder, else OpenCV's Haar cascade
// from the system's data, else nullptr (the reason is logged once per process).
std::unique_ptr<FaceDetector> makeFaceDetector();

} // namespace lumaro::platform
