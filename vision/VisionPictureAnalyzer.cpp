// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionPictureAnalyzer.h"

#include "vision/VisionClassificationEngine.h"

#include "platform/Log.h"
#include "platform/vision/AnalysisImage.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>

namespace lumaro::vision {

using platform::Log;
using platform::SceneObservation;

namespace {

const QString kTag = QStringLiteral("VISION_INDEX");
// What the face detector's finding is called among the classifier's identifiers; a people word.
const QString kPersonIdentifier = QStringLiteral("person");

void addTime(std::atomic<qint64>* counter, const QElapsedTimer& timer)
{
    if (counter)
        counter->fetch_add(timer.nsecsElapsed(), std::memory_order_relaxed);
}

} // namespace

VisionPictureAnalyzer::VisionPictureAnalyzer(std::unique_ptr<platform::SceneClassifier> classifier,
                                             std::unique_ptr<platform::TextRecognizer> recognizer,
                                             std::unique_ptr<platform::FaceDetector> faces)
    : m_classifier(std::move(classifier))
    , m_recognizer(std::move(recognizer))
    , m_faces(std::move(faces))
{
}

VisionPictureAnalyzer::~VisionPictureAnalyzer() = default;

std::unique_ptr<VisionPictureAnalyzer> VisionPictureAnalyzer::withInstalledModels()
{
    return std::make_unique<VisionPictureAnalyzer>(platform::makeSceneClassifier(), platform::makeTextRecognizer(),
                                                   platform::makeFaceDetector());
}

std::vector<SceneObservation> VisionPictureAnalyzer::keptObservations(const std::vector<SceneObservation>& observations)
{
    std::vector<SceneObservation> kept;
    const size_t considered = std::min<size_t>(observations.size(), kMaxObservations);
    for (size_t i = 0; i < considered; ++i) {
        if (observations[i].confidence > kMinConfidence)
            kept.push_back(observations[i]);
    }
    return kept;
}

std::optional<std::vector<SceneObservation>> VisionPictureAnalyzer::classify(const QImage& image,
                                                                             VisionStageTimes* times)
{
    std::vector<SceneObservation> observations;
    if (m_classifier) {
        QElapsedTimer timer;
        timer.start();
        platform::SceneClassification classified = m_classifier->classify(image);
        addTime(times ? &times->classification : nullptr, timer);
        if (classified.error.isEmpty())
            observations = std::move(classified.observations);
        else
            Log::line(kTag, QStringLiteral("场景分类错误: ") + classified.error);
    }
    // The ImageNet classifier has no class for people: a portrait comes back as "suit" or "wig" at best and
    // could never reach a people mark. The face detector fills that gap, reporting a person as one more
    // observation with its own score, ranked among the classifier's by confidence.
    if (m_faces) {
        QElapsedTimer timer;
        timer.start();
        const platform::FaceDetection found = m_faces->detect(image);
        addTime(times ? &times->faces : nullptr, timer);
        if (!found.error.isEmpty()) {
            // The detector could not look at the picture at all, so "no person" would be a guess.
            Log::line(kTag, QStringLiteral("执行 Vision 请求失败: ") + found.error);
            return std::nullopt;
        }
        if (!found.faces.empty()) {
            observations.push_back({kPersonIdentifier, found.faces.front().score});
            std::stable_sort(observations.begin(), observations.end(),
                             [](const SceneObservation& a, const SceneObservation& b) {
                                 return a.confidence > b.confidence;
                             });
        }
    }
    return observations;
}

std::optional<VisionRecognitionResult> VisionPictureAnalyzer::analyze(const QString& filePath, VisionStageTimes* times)
{
    QElapsedTimer decodeTimer;
    decodeTimer.start();
    QString error;
    const std::optional<platform::AnalysisImage> decoded =
        platform::AnalysisImageReader::read(filePath, kDecodeSide, &error);
    addTime(times ? &times->decode : nullptr, decodeTimer);
    if (!decoded) {
        Log::line(kTag, QStringLiteral("执行 Vision 请求失败: ") + error);
        return std::nullopt;
    }

    VisionRecognitionResult result;
    result.fileName = QFileInfo(filePath).fileName();
    result.filePath = filePath;
    result.pixelWidth = decoded->pixelSize.width();
    result.pixelHeight = decoded->pixelSize.height();

    const auto observations = classify(decoded->image, times);
    if (!observations)
        return std::nullopt;
    double confidenceSum = 0.0;
    for (const SceneObservation& kept : keptObservations(*observations)) {
        result.recognizedObjects << kept.identifier;
        result.sceneClassification << kept.identifier;
        confidenceSum += kept.confidence;
    }
    const qsizetype labelCount = result.recognizedObjects.size() + result.sceneClassification.size();
    result.confidence = labelCount > 0 ? confidenceSum / double(labelCount) : 0.0;

    if (m_recognizer) {
        QElapsedTimer timer;
        timer.start();
        const platform::TextRecognition text = m_recognizer->recognize(decoded->image);
        addTime(times ? &times->text : nullptr, timer);
        if (text.error.isEmpty())
            result.recognizedText = text.lines;
        else
            Log::line(kTag, QStringLiteral("文本识别错误: ") + text.error);
    }

    result.classificationMark = VisionClassificationEngine::shared().mark(
        result.recognizedObjects, result.sceneClassification, result.pixelWidth, result.pixelHeight);
    return result;
}

} // namespace lumaro::vision
