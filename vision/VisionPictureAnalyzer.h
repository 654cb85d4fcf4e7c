// SPDX-License-Identifier: GPL-3.0-or-later
// The request set of one picture: decode once, run every installed backend, label, pick a mark.
#pragma once

#include "vision/PictureSignals.h"
#include "vision/VisionRecognitionResult.h"

#include "platform/vision/DrawingClassifier.h"
#include "platform/vision/FaceDetector.h"
#include "platform/vision/ObjectDetector.h"
#include "platform/vision/PersonDetector.h"
#include "platform/vision/SceneClassifier.h"
#include "platform/vision/TextRecognizer.h"

#include <QString>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace lumaro::vision {

// Nanoseconds spent per stage over a run, summed over all workers.
struct VisionStageTimes
{
    std::atomic<qint64> decode{0};
    std::atomic<qint64> classification{0};
    std::atomic<qint64> objects{0};
    std::atomic<qint64> people{0};
    std::atomic<qint64> faces{0};
    std::atomic<qint64> drawing{0};
    std::atomic<qint64> text{0};
};

// Every backend is optional: a missing one (no model installed) only leaves its signal out.
struct VisionBackends
{
    std::unique_ptr<platform::SceneClassifier> classifier;
    std::unique_ptr<platform::TextRecognizer> recognizer;
    std::unique_ptr<platform::FaceDetector> faces;
    std::unique_ptr<platform::PersonDetector> people;
    std::unique_ptr<platform::ObjectDetector> objects;
    std::unique_ptr<platform::DrawingClassifier> drawing;

    // The installed models; each one missing is logged once per process, naming the signal left out.
    static VisionBackends installed();
};

// Thread-safe: the workers of a run share one analyser. A backend keeps network state (and the networks'
// working memory, hundreds of MB at 24 MP across all of them), so each backend serves one picture at a time
// behind its own lock while the other workers decode or use the other backends. A picture that cannot be
// decoded gives nullopt and its reason in `error`; a backend's error is logged and only empties that
// backend's part.
class VisionPictureAnalyzer
{
public:
    explicit VisionPictureAnalyzer(VisionBackends backends);
    ~VisionPictureAnalyzer();

    static std::unique_ptr<VisionPictureAnalyzer> withInstalledModels();

    std::optional<VisionRecognitionResult> analyze(const QString& filePath, VisionStageTimes* times = nullptr,
                                                   QString* error = nullptr);

    // Of the observations as given (decisive first): at most the first 10, then those strictly above 0.2
    // in single precision.
    static std::vector<platform::SceneObservation>
    keptObservations(const std::vector<platform::SceneObservation>& observations);

    // Long side of the decoded picture: text recognition needs the most pixels of all.
    static constexpr int kDecodeSide = 1600;
    // Long side faces are looked for at: they only confirm people, and a face that matters is large.
    static constexpr int kFaceSide = 640;
    static constexpr int kMaxObservations = 10;
    static constexpr float kMinConfidence = 0.2f;

private:
    // nullopt when the face detector could not look at the picture at all (logged, the reason in `error`):
    // "no face" would be a guess.
    std::optional<PictureSignals> signalsOf(const QString& filePath, const QImage& image,
                                            const QSize& pixelSize, VisionStageTimes* times, QString* error);
    std::optional<std::vector<platform::FaceBox>> facesIn(const QImage& image, VisionStageTimes* times,
                                                          QString* error);

    VisionBackends m_backends;
    struct Locks
    {
        std::mutex classifier, recognizer, faces, people, objects, drawing;
    };
    Locks m_locks;
};

} // namespace lumaro::vision
