// SPDX-License-Identifier: GPL-3.0-or-later
// The request set of one picture: decode once, classify (with faces as people), recognise text, pick a mark.
#pragma once

#include "vision/VisionRecognitionResult.h"

#include "platform/vision/FaceDetector.h"
#include "platform/vision/SceneClassifier.h"
#include "platform/vision/TextRecognizer.h"

#include <QString>

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

namespace lumaro::vision {

// Nanoseconds spent per stage over a run, summed over all workers.
struct VisionStageTimes
{
    std::atomic<qint64> decode{0};
    std::atomic<qint64> classification{0};
    std::atomic<qint64> faces{0};
    std::atomic<qint64> text{0};
};

// One analyser per worker thread: the backends it owns are not thread-safe and are made once. Any backend may
// be missing (no model installed): its part of the result is then empty. A picture that cannot be decoded
// gives nullopt; a backend's error is logged and only empties that backend's part.
class VisionPictureAnalyzer
{
public:
    VisionPictureAnalyzer(std::unique_ptr<platform::SceneClassifier> classifier,
                          std::unique_ptr<platform::TextRecognizer> recognizer,
                          std::unique_ptr<platform::FaceDetector> faces);
    ~VisionPictureAnalyzer();

    // The installed backends (each may be missing).
    static std::unique_ptr<VisionPictureAnalyzer> withInstalledModels();

    std::optional<VisionRecognitionResult> analyze(const QString& filePath, VisionStageTimes* times = nullptr);

    // Of the observations as given (best first): at most the first 10, then those strictly above 0.2 in
    // single precision.
    static std::vector<platform::SceneObservation> keptObservations(
        const std::vector<platform::SceneObservation>& observations);

    // Long side of the decoded picture: text recognition needs the most pixels of the three.
    static constexpr int kDecodeSide = 1600;
    static constexpr int kMaxObservations = 10;
    static constexpr float kMinConfidence = 0.2f;

private:
    // nullopt when the face detector could not look at the picture (logged).
    std::optional<std::vector<platform::SceneObservation>> classify(const QImage& image,
                                                                    VisionStageTimes* times);

    std::unique_ptr<platform::SceneClassifier> m_classifier;
    std::unique_ptr<platform::TextRecognizer> m_recognizer;
    std::unique_ptr<platform::FaceDetector> m_faces;
};

} // namespace lumaro::vision
