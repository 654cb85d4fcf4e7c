// SPDX-License-Identifier: GPL-3.0-or-later
// People and their keypoints from MoveNet MultiPose (cv::dnn), up to six per picture, no face needed.
#pragma once

#include "platform/vision/PersonDetector.h"

#include <memory>

namespace lumaro::platform {

// Not thread-safe: one instance per worker. The picture is letterboxed into a square of inputSide pixels
// (a multiple of 32: 256 is the model's own size; larger finds smaller people at a higher cost). People
// below minScore are dropped.
class MoveNetMultiPoseDetector final : public PersonDetector
{
public:
    static constexpr const char* kModelPath = "pose/movenet_multipose_lightning_256.onnx";
    static constexpr float kDefaultMinScore = 0.25f;

    // nullptr when the file is missing or cannot be loaded (the reason is logged).
    static std::unique_ptr<MoveNetMultiPoseDetector> load(const QString& modelPath, int inputSide = 256,
                                                          float minScore = kDefaultMinScore);
    // The installed model, or nullptr (logged once per process).
    static std::unique_ptr<MoveNetMultiPoseDetector> installed(int inputSide = 256,
                                                               float minScore = kDefaultMinScore);
    ~MoveNetMultiPoseDetector() override;

    PersonDetections detect(const QImage& image) override;

private:
    struct Network;
    MoveNetMultiPoseDetector(std::unique_ptr<Network> network, int inputSide, float minScore);
    std::unique_ptr<Network> m_network;
    int m_inputSide;
    float m_minScore;
};

} // namespace lumaro::platform
