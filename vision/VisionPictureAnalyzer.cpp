// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionPictureAnalyzer.h"

#include "vision/PictureLabeler.h"
#include "vision/ScreenCaptureEvidence.h"
#include "vision/VisionClassificationEngine.h"

#include "platform/Log.h"
#include "platform/picture/FittedSize.h"
#include "platform/vision/AnalysisImage.h"
#include "platform/vision/CenterNetObjectDetector.h"
#include "platform/vision/MoveNetMultiPoseDetector.h"

#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>

namespace lumaro::vision {

using platform::Log;
using platform::SceneObservation;

namespace {

const QString kTag = QStringLiteral("VISION_INDEX");

// Times one backend call into its stage counter.
class StageTimer
{
public:
    explicit StageTimer(std::atomic<qint64>* counter) : m_counter(counter) { m_timer.start(); }
    ~StageTimer()
    {
        if (m_counter)
            m_counter->fetch_add(m_timer.nsecsElapsed(), std::memory_order_relaxed);
    }

private:
    std::atomic<qint64>* m_counter;
    QElapsedTimer m_timer;
};

std::atomic<qint64>* stage(VisionStageTimes* times, std::atomic<qint64> VisionStageTimes::*member)
{
    return times ? &(times->*member) : nullptr;
}

void logBackendError(const QString& what, const QString& error)
{
    Log::line(kTag, what + error);
}

} // namespace

VisionBackends VisionBackends::installed()
{
    VisionBackends backends;
    backends.classifier = platform::makeSceneClassifier();
    backends.recognizer = platform::makeTextRecognizer();
    backends.faces = platform::makeFaceDetector();
    backends.people = platform::MoveNetMultiPoseDetector::installed();
    backends.objects = platform::CenterNetObjectDetector::installed();
    backends.drawing = platform::makeDrawingClassifier();
    return backends;
}

VisionPictureAnalyzer::VisionPictureAnalyzer(VisionBackends backends) : m_backends(std::move(backends)) {}

VisionPictureAnalyzer::~VisionPictureAnalyzer() = default;

std::unique_ptr<VisionPictureAnalyzer> VisionPictureAnalyzer::withInstalledModels()
{
    return std::make_unique<VisionPictureAnalyzer>(VisionBackends::installed());
}

std::vector<SceneObservation>
VisionPictureAnalyzer::keptObservations(const std::vector<SceneObservation>& observations)
{
    std::vector<SceneObservation> kept;
    const size_t considered = std::min<size_t>(observations.size(), kMaxObservations);
    for (size_t i = 0; i < considered; ++i) {
        if (observations[i].confidence > kMinConfidence)
            kept.push_back(observations[i]);
    }
    return kept;
}

std::optional<std::vector<platform::FaceBox>>
VisionPictureAnalyzer::facesIn(const QImage& image, VisionStageTimes* times, QString* error)
{
    if (!m_backends.faces)
        return std::vector<platform::FaceBox>{};
    StageTimer timer(stage(times, &VisionStageTimes::faces));
    // fittedSize keeps both sides at least one pixel, so a panorama strip never reaches the detector empty.
    const QImage small = image.scaled(platform::fittedSize(image.size(), kFaceSide), Qt::IgnoreAspectRatio,
                                      Qt::SmoothTransformation);
    platform::FaceDetection found;
    {
        std::lock_guard lock(m_locks.faces);
        found = m_backends.faces->detect(small);
    }
    if (!found.error.isEmpty()) {
        Log::line(kTag, QStringLiteral("执行 Vision 请求失败: ") + found.error);
        *error = found.error;
        return std::nullopt;
    }
    const double scaleX = double(image.width()) / small.width();
    const double scaleY = double(image.height()) / small.height();
    for (platform::FaceBox& face : found.faces) {
        face.box = QRectF(face.box.x() * scaleX, face.box.y() * scaleY, face.box.width() * scaleX,
                          face.box.height() * scaleY);
    }
    return std::move(found.faces);
}

std::optional<PictureSignals> VisionPictureAnalyzer::signalsOf(const QString& filePath, const QImage& image,
                                                               const QSize& pixelSize,
                                                               VisionStageTimes* times, QString* error)
{
    PictureSignals s;
    s.pixelSize = pixelSize;
    s.analysedSize = image.size();
    if (m_backends.classifier) {
        std::lock_guard lock(m_locks.classifier);
        StageTimer timer(stage(times, &VisionStageTimes::classification));
        platform::SceneClassification classified = m_backends.classifier->classify(image);
        if (classified.error.isEmpty()) {
            s.imageNet = std::move(classified.observations);
            s.kinds = pictureKindOf(classified.description);
        } else
            logBackendError(QStringLiteral("场景分类错误: "), classified.error);
    }
    if (m_backends.objects) {
        std::lock_guard lock(m_locks.objects);
        StageTimer timer(stage(times, &VisionStageTimes::objects));
        platform::ObjectDetections found = m_backends.objects->detect(image);
        if (found.error.isEmpty())
            s.objects = std::move(found.objects);
        else
            logBackendError(QStringLiteral("物体检测错误: "), found.error);
    }
    if (m_backends.people) {
        std::lock_guard lock(m_locks.people);
        StageTimer timer(stage(times, &VisionStageTimes::people));
        platform::PersonDetections found = m_backends.people->detect(image);
        if (found.error.isEmpty())
            s.people = std::move(found.people);
        else
            logBackendError(QStringLiteral("人物检测错误: "), found.error);
    }
    std::optional<std::vector<platform::FaceBox>> faces = facesIn(image, times, error);
    if (!faces)
        return std::nullopt;
    s.faces = std::move(*faces);
    if (m_backends.drawing) {
        std::lock_guard lock(m_locks.drawing);
        StageTimer timer(stage(times, &VisionStageTimes::drawing));
        const platform::DrawingScore drawing = m_backends.drawing->score(image);
        if (drawing.error.isEmpty())
            s.drawing = drawing.drawing;
        else
            logBackendError(QStringLiteral("插画判断错误: "), drawing.error);
    }
    if (m_backends.recognizer) {
        std::lock_guard lock(m_locks.recognizer);
        StageTimer timer(stage(times, &VisionStageTimes::text));
        const platform::TextRecognition text = m_backends.recognizer->recognize(image);
        if (text.error.isEmpty()) {
            s.textLines = text.lines;
            s.textShare = text.textShare;
        } else {
            logBackendError(QStringLiteral("文本识别错误: "), text.error);
        }
    }
    s.screen = ScreenCaptureEvidence::of(filePath, image, pixelSize);
    return s;
}

std::optional<VisionRecognitionResult> VisionPictureAnalyzer::analyze(const QString& filePath,
                                                                      VisionStageTimes* times, QString* error)
{
    QString reason;
    if (!error)
        error = &reason;
    std::optional<platform::AnalysisImage> decoded;
    {
        StageTimer timer(stage(times, &VisionStageTimes::decode));
        decoded = platform::AnalysisImageReader::read(filePath, kDecodeSide, error);
    }
    if (!decoded) {
        Log::line(kTag, QStringLiteral("执行 Vision 请求失败: ") + *error);
        return std::nullopt;
    }

    VisionRecognitionResult result;
    result.fileName = QFileInfo(filePath).fileName();
    result.filePath = filePath;
    result.pixelWidth = decoded->pixelSize.width();
    result.pixelHeight = decoded->pixelSize.height();

    const std::optional<PictureSignals> signals =
        signalsOf(filePath, decoded->image, decoded->pixelSize, times, error);
    if (!signals)
        return std::nullopt;
    double confidenceSum = 0.0;
    for (const SceneObservation& kept : keptObservations(PictureLabeler::labels(*signals))) {
        result.recognizedObjects << kept.identifier;
        result.sceneClassification << kept.identifier;
        confidenceSum += kept.confidence;
    }
    const qsizetype labelCount = result.recognizedObjects.size() + result.sceneClassification.size();
    result.confidence = labelCount > 0 ? confidenceSum / double(labelCount) : 0.0;
    result.recognizedText = signals->textLines;
    result.classificationMark = VisionClassificationEngine::shared().mark(
        result.recognizedObjects, result.sceneClassification, result.pixelWidth, result.pixelHeight);
    return result;
}

} // namespace lumaro::vision
