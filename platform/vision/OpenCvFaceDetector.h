// SPDX-License-Identifier: GPL-3.0-or-later
// Face detection with OpenCV: the YuNet network when its model is installed, else a Haar cascade.
#pragma once

#include "platform/vision/FaceDetector.h"

#include <QString>

#include <memory>

namespace lumaro::platform {

// Not thread-safe: one instance per worker. Large images are scaled so the long side is at most
// maxSide() first (YuNet finds faces of about 10–300 px best, and its time grows with the pixel count);
// boxes come back in the caller's pixels.
class OpenCvFaceDetector final : public FaceDetector
{
public:
    // nullptr when the file cannot be loaded as a YuNet model (the reason is logged). With a cascade file, a
    // face counts only when the cascade finds one around it too (see the .cpp for why).
    static std::unique_ptr<OpenCvFaceDetector> fromYuNet(const QString& modelPath,
                                                         const QString& verifierCascadePath = {},
                                                         float scoreThreshold = 0.7f);
    // nullptr when the cascade file cannot be loaded.
    static std::unique_ptr<OpenCvFaceDetector> fromHaarCascade(const QString& cascadePath);
    ~OpenCvFaceDetector() override;

    FaceDetection detect(const QImage& image) override;

    static int maxSide() { return 1280; }

private:
    std::vector<FaceBox> detectIn(const QImage& image);

    struct Backend;
    explicit OpenCvFaceDetector(std::unique_ptr<Backend> backend);
    std::unique_ptr<Backend> m_backend;
};

} // namespace lumaro::platform
