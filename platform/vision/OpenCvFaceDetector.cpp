// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/OpenCvFaceDetector.h"

#include "platform/Log.h"
#include "platform/vision/MatFromImage_p.h"
#include "platform/vision/ModelFiles.h"

#include <QFileInfo>

#include <opencv2/imgproc.hpp>
#include <opencv2/objdetect.hpp>

#include <algorithm>
#include <cmath>
#include <mutex>

namespace lumaro::platform {

struct OpenCvFaceDetector::Backend
{
    cv::Ptr<cv::FaceDetectorYN> yunet;
    cv::CascadeClassifier cascade;
};

namespace {

const QString kTag = QStringLiteral("VISION_FACES");

const char* const kHaarCascades[] = {
    "/usr/share/opencv4/haarcascades/haarcascade_frontalface_default.xml",
    "/usr/share/opencv/haarcascades/haarcascade_frontalface_default.xml",
};

cv::Mat scaledForDetection(const cv::Mat& bgr, double* scale)
{
    const int longSide = std::max(bgr.cols, bgr.rows);
    *scale = 1.0;
    if (longSide <= OpenCvFaceDetector::maxSide())
        return bgr;
    *scale = double(OpenCvFaceDetector::maxSide()) / longSide;
    cv::Mat small;
    cv::resize(bgr, small, cv::Size(), *scale, *scale, cv::INTER_AREA);
    return small;
}

} // namespace

OpenCvFaceDetector::OpenCvFaceDetector(std::unique_ptr<Backend> backend)
    : m_backend(std::move(backend))
{
}

OpenCvFaceDetector::~OpenCvFaceDetector() = default;

std::unique_ptr<OpenCvFaceDetector> OpenCvFaceDetector::fromYuNet(const QString& modelPath, float scoreThreshold)
{
    auto backend = std::make_unique<Backend>();
    try {
        backend->yunet = cv::FaceDetectorYN::create(modelPath.toStdString(), "", cv::Size(320, 320),
                                                    scoreThreshold, 0.3f, 5000);
    } catch (const cv::Exception& error) {
        Log::line(kTag, QStringLiteral("❌ 人脸模型加载失败: ") + QString::fromStdString(error.what()));
        return nullptr;
    }
    if (backend->yunet.empty())
        return nullptr;
    return std::unique_ptr<OpenCvFaceDetector>(new OpenCvFaceDetector(std::move(backend)));
}

std::unique_ptr<OpenCvFaceDetector> OpenCvFaceDetector::fromHaarCascade(const QString& cascadePath)
{
    auto backend = std::make_unique<Backend>();
    if (!backend->cascade.load(cascadePath.toStdString()))
        return nullptr;
    return std::unique_ptr<OpenCvFaceDetector>(new OpenCvFaceDetector(std::move(backend)));
}

std::vector<FaceBox> OpenCvFaceDetector::detect(const QImage& image)
{
    const cv::Mat bgr = detail::bgrMatFromImage(image);
    if (bgr.empty())
        return {};
    double scale = 1.0;
    const cv::Mat input = scaledForDetection(bgr, &scale);
    std::vector<FaceBox> boxes;
    try {
        if (m_backend->yunet) {
            m_backend->yunet->setInputSize(input.size());
            cv::Mat faces;
            m_backend->yunet->detect(input, faces);
            for (int row = 0; row < faces.rows; ++row) {
                const float* f = faces.ptr<float>(row);
                boxes.push_back({QRectF(f[0] / scale, f[1] / scale, f[2] / scale, f[3] / scale), f[14]});
            }
        } else {
            cv::Mat gray;
            cv::cvtColor(input, gray, cv::COLOR_BGR2GRAY);
            std::vector<cv::Rect> rects;
            std::vector<int> levels;
            std::vector<double> weights;
            m_backend->cascade.detectMultiScale(gray, rects, levels, weights, 1.1, 5, 0, cv::Size(24, 24),
                                                cv::Size(), true);
            for (size_t i = 0; i < rects.size(); ++i) {
                const cv::Rect& r = rects[i];
                // The cascade's last-stage weight is unbounded; a logistic squashes it into a 0..1 score.
                const float score = i < weights.size() ? float(1.0 / (1.0 + std::exp(-weights[i]))) : 0.5f;
                boxes.push_back({QRectF(r.x / scale, r.y / scale, r.width / scale, r.height / scale), score});
            }
        }
    } catch (const cv::Exception& error) {
        Log::line(kTag, QStringLiteral("❌ 人脸检测失败: ") + QString::fromStdString(error.what()));
        return {};
    }
    std::sort(boxes.begin(), boxes.end(), [](const FaceBox& a, const FaceBox& b) { return a.score > b.score; });
    return boxes;
}

std::unique_ptr<FaceDetector> makeFaceDetector()
{
    static std::once_flag reported;
    const QString yunetPath = ModelFiles::find(QStringLiteral("face/face_detection_yunet_2022mar.onnx"));
    if (!yunetPath.isEmpty()) {
        if (auto detector = OpenCvFaceDetector::fromYuNet(yunetPath))
            return detector;
    }
    for (const char* cascade : kHaarCascades) {
        if (!QFileInfo::exists(QString::fromLatin1(cascade)))
            continue;
        if (auto detector = OpenCvFaceDetector::fromHaarCascade(QString::fromLatin1(cascade))) {
            std::call_once(reported, [] { Log::line(kTag, QStringLiteral("⚠️ 未找到 YuNet 人脸模型，使用 Haar 级联检测人脸")); });
            return detector;
        }
    }
    std::call_once(reported, [] { Log::line(kTag, QStringLiteral("⚠️ 未找到人脸检测模型，跳过人脸检测")); });
    return nullptr;
}

} // namespace lumaro::platform
