// SPDX-License-Identifier: GPL-3.0-or-later
// COCO-80 objects from the CenterNet (MobileNetV3) detector through cv::dnn.
#pragma once

#include "platform/vision/ObjectDetector.h"

#include <QStringList>

#include <memory>

namespace lumaro::platform {

// Not thread-safe: one instance per worker. The picture is resized plainly to 512 × 512 (the model's own
// preparation); boxes come back in the caller's pixels, overlapping boxes of one class merged (IoU 0.4).
// Detections below minScore are dropped: below 0.45 the model names things that are not there.
class CenterNetObjectDetector final : public ObjectDetector
{
public:
    static constexpr const char* kModelPath = "detect/centernet_mbv3_coco_512.onnx";
    static constexpr const char* kLabelsPath = "detect/coco80_labels.txt";
    static constexpr float kDefaultMinScore = 0.45f;

    static std::unique_ptr<CenterNetObjectDetector> load(const QString& modelPath, const QString& labelsPath,
                                                         float minScore = kDefaultMinScore);
    // The installed model, or nullptr (logged once per process).
    static std::unique_ptr<CenterNetObjectDetector> installed(float minScore = kDefaultMinScore);
    ~CenterNetObjectDetector() override;

    ObjectDetections detect(const QImage& image) override;

private:
    struct Network;
    CenterNetObjectDetector(std::unique_ptr<Network> network, QStringList labels, float minScore);
    std::unique_ptr<Network> m_network;
    QStringList m_labels;
    float m_minScore;
};

} // namespace lumaro::platform
