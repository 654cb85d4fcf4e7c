// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/OpenCvFaceDetector.h"

#include "platform/ForeignCall.h"
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
    cv::CascadeClassifier cascade; // the detector itself without YuNet, its second opinion with it
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
    // A 40000×8 strip would lose its short side altogether, and OpenCV asserts on an empty size.
    const cv::Size size(std::max(1, int(std::lround(bgr.cols * *scale))),
                        std::max(1, int(std::lround(bgr.rows * *scale))));
    cv::Mat small;
    cv::resize(bgr, small, size, 0, 0, cv::INTER_AREA);
    return small;
}

// YuNet halves the picture five times and pools once more, so a side that rounds up to one block of 32 ends
// in an empty layer and OpenCV throws. A black border to the right and below gives a thumbnail-sized picture
// room without moving any box.
cv::Mat withRoomForTheNetwork(const cv::Mat& bgr)
{
    constexpr int kSmallestSide = 64;
    if (bgr.cols >= kSmallestSide && bgr.rows >= kSmallestSide)
        return bgr;
    cv::Mat framed;
    cv::copyMakeBorder(bgr, framed, 0, std::max(0, kSmallestSide - bgr.rows), 0,
                       std::max(0, kSmallestSide - bgr.cols), cv::BORDER_CONSTANT, cv::Scalar::all(0));
    return framed;
}

// YuNet alone scores a cat's face (0.78) or a motorcycle's lamps (0.92) above a real small face (0.77), so no
// threshold separates them. A Haar cascade fails in other ways, so a YuNet face counts only when the cascade
// also finds a face in the region around it: on the reference photos that keeps every real face and drops
// every false one.
bool cascadeConfirms(cv::CascadeClassifier& cascade, const cv::Mat& bgr, const cv::Rect2f& face)
{
    const float margin = face.width / 2;
    cv::Rect region(cv::Point(int(face.x - margin), int(face.y - margin)),
                    cv::Size(int(face.width + 2 * margin), int(face.height + 2 * margin)));
    region &= cv::Rect(0, 0, bgr.cols, bgr.rows);
    if (region.width < 8 || region.height < 8)
        return false;
    cv::Mat crop;
    cv::resize(bgr(region), crop, cv::Size(128, std::max(1, 128 * region.height / region.width)));
    cv::Mat gray;
    cv::cvtColor(crop, gray, cv::COLOR_BGR2GRAY);
    cv::equalizeHist(gray, gray);
    std::vector<cv::Rect> found;
    cascade.detectMultiScale(gray, found, 1.05, 3, 0, cv::Size(30, 30));
    return !found.empty();
}

} // namespace

OpenCvFaceDetector::OpenCvFaceDetector(std::unique_ptr<Backend> backend) : m_backend(std::move(backend)) {}

OpenCvFaceDetector::~OpenCvFaceDetector() = default;

std::unique_ptr<OpenCvFaceDetector> OpenCvFaceDetector::fromYuNet(const QString& modelPath,
                                                                  const QString& verifierCascadePath,
                                                                  float scoreThreshold)
{
    auto backend = std::make_unique<Backend>();
    try {
        if (!verifierCascadePath.isEmpty())
            backend->cascade.load(verifierCascadePath.toStdString());
        backend->yunet = cv::FaceDetectorYN::create(modelPath.toStdString(), "", cv::Size(320, 320),
                                                    scoreThreshold, 0.3f, 5000);
    } catch (const std::exception& error) {
        Log::line(kTag, QStringLiteral("❌ 人脸模型加载失败: ") + QString::fromUtf8(error.what()));
        return nullptr;
    }
    if (backend->yunet.empty())
        return nullptr;
    return std::unique_ptr<OpenCvFaceDetector>(new OpenCvFaceDetector(std::move(backend)));
}

std::unique_ptr<OpenCvFaceDetector> OpenCvFaceDetector::fromHaarCascade(const QString& cascadePath)
{
    auto backend = std::make_unique<Backend>();
    const bool loaded =
        guardedForeignCall([&] { return backend->cascade.load(cascadePath.toStdString()); },
                           [](const QString& reason) {
                               Log::line(kTag, QStringLiteral("❌ 人脸模型加载失败: ") + reason);
                               return false;
                           });
    if (!loaded)
        return nullptr;
    return std::unique_ptr<OpenCvFaceDetector>(new OpenCvFaceDetector(std::move(backend)));
}

FaceDetection OpenCvFaceDetector::detect(const QImage& image)
{
    return guardedForeignCall(
        [&] {
            return FaceDetection{detectIn(image), {}};
        },
        [](const QString& reason) {
            return FaceDetection{{}, reason};
        });
}

std::vector<FaceBox> OpenCvFaceDetector::detectIn(const QImage& image)
{
    const cv::Mat bgr = detail::bgrMatFromImage(image);
    if (bgr.empty())
        return {};
    double scale = 1.0;
    const cv::Mat input = withRoomForTheNetwork(scaledForDetection(bgr, &scale));
    std::vector<FaceBox> boxes;
    if (m_backend->yunet) {
        m_backend->yunet->setInputSize(input.size());
        cv::Mat faces;
        m_backend->yunet->detect(input, faces);
        for (int row = 0; row < faces.rows; ++row) {
            const float* f = faces.ptr<float>(row);
            if (!m_backend->cascade.empty() &&
                !cascadeConfirms(m_backend->cascade, input, cv::Rect2f(f[0], f[1], f[2], f[3])))
                continue;
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
    std::sort(boxes.begin(), boxes.end(),
              [](const FaceBox& a, const FaceBox& b) { return a.score > b.score; });
    return boxes;
}

std::unique_ptr<FaceDetector> makeFaceDetector()
{
    static std::once_flag reported;
    QString cascadePath;
    for (const char* cascade : kHaarCascades) {
        if (QFileInfo::exists(QString::fromLatin1(cascade))) {
            cascadePath = QString::fromLatin1(cascade);
            break;
        }
    }
    const QString yunetPath = ModelFiles::find(QStringLiteral("face/face_detection_yunet_2022mar.onnx"));
    if (!yunetPath.isEmpty()) {
        if (auto detector = OpenCvFaceDetector::fromYuNet(yunetPath, cascadePath))
            return detector;
    }
    if (!cascadePath.isEmpty()) {
        if (auto detector = OpenCvFaceDetector::fromHaarCascade(cascadePath)) {
            std::call_once(reported, [] {
                Log::line(kTag, QStringLiteral(
                                    "⚠️ 未找到 YuNet 人脸模型，使用 Haar 级联检测人脸"));
            });
            return detector;
        }
    }
    std::call_once(reported, [] {
        Log::line(kTag, QStringLiteral("⚠️ 未找到人脸检测模型，跳过人脸检测"));
    });
    return nullptr;
}

} // namespace lumaro::platform
