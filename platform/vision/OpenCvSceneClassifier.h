// SPDX-License-Identifier: GPL-3.0-or-later
// Scene classification with OpenCV's DNN module and an ImageNet classifier in ONNX form.
#pragma once

#include "platform/vision/SceneClassifier.h"

#include <QStringList>

#include <memory>

namespace lumaro::platform {

// Not thread-safe: one instance per worker. The picture is resized so its shorter side is 256, centre
// cropped to 224, normalised with the ImageNet mean and deviation; the logits go through a softmax here.
class OpenCvSceneClassifier final : public SceneClassifier
{
public:
    // nullptr when the model or the label list cannot be loaded, or they disagree in size (logged).
    static std::unique_ptr<OpenCvSceneClassifier> load(const QString& modelPath, const QString& labelsPath);
    ~OpenCvSceneClassifier() override;

    SceneClassification classify(const QImage& image) override;

    // How many observations come back, best first.
    static constexpr int kObservations = 20;
    static constexpr qsizetype kImageNetClasses = 1000; // the label list whose class order gives kinds

private:
    SceneClassification classifyImage(const QImage& image);

    struct Network;
    OpenCvSceneClassifier(std::unique_ptr<Network> network, QStringList identifiers);
    std::unique_ptr<Network> m_network;
    QStringList m_identifiers;
};

} // namespace lumaro::platform
