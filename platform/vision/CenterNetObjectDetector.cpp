// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/CenterNetObjectDetector.h"

#include "platform/Log.h"
#include "platform/vision/MatFromImage_p.h"
#include "platform/vision/OnnxNetwork_p.h"
#include "platform/vision/SceneClassifier.h"

#include <QFile>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <exception>
#include <map>

namespace lumaro::platform {

struct CenterNetObjectDetector::Network
{
    cv::dnn::Net net;
};

namespace {

constexpr int kInputSide = 512;
constexpr int kStride = 4;
constexpr int kMaxPeaks = 100;
constexpr float kNmsOverlap = 0.4f;

struct Peak
{
    int index; // in the graph's own order (y, x, class), which breaks ties
    int cls, y, x;
    float score;
};

// Cells equal to the 3×3 maximum around them, the best kMaxPeaks over all classes.
std::vector<Peak> peaks(const cv::Mat& heatmap, float floor)
{
    const int classes = heatmap.size[1], rows = heatmap.size[2], cols = heatmap.size[3];
    std::vector<Peak> found;
    const cv::Mat kernel = cv::getStructuringElement(cv::MORPH_RECT, cv::Size(3, 3));
    for (int c = 0; c < classes; ++c) {
        const cv::Mat map(rows, cols, CV_32F, const_cast<float*>(heatmap.ptr<float>(0, c)));
        cv::Mat pooled;
        cv::dilate(map, pooled, kernel);
        for (int y = 0; y < rows; ++y) {
            for (int x = 0; x < cols; ++x) {
                const float value = map.at<float>(y, x);
                if (value > floor && value == pooled.at<float>(y, x))
                    found.push_back({(y * cols + x) * classes + c, c, y, x, value});
            }
        }
    }
    std::sort(found.begin(), found.end(), [](const Peak& a, const Peak& b) {
        return a.score != b.score ? a.score > b.score : a.index < b.index;
    });
    found.resize(std::min<size_t>(found.size(), kMaxPeaks));
    return found;
}

} // namespace

CenterNetObjectDetector::CenterNetObjectDetector(std::unique_ptr<Network> network, QStringList labels,
                                                 float minScore)
    : m_network(std::move(network)), m_labels(std::move(labels)), m_minScore(minScore)
{
}

CenterNetObjectDetector::~CenterNetObjectDetector() = default;

std::unique_ptr<CenterNetObjectDetector>
CenterNetObjectDetector::load(const QString& modelPath, const QString& labelsPath, float minScore)
{
    QFile file(labelsPath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text) || file.size() > 1 << 20) {
        Log::line(QStringLiteral("VISION_INDEX"), QStringLiteral("❌ 无法读取物体标签: ") + labelsPath);
        return nullptr;
    }
    QStringList labels;
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (!line.trimmed().isEmpty())
            labels << snakeCaseIdentifier(QString::fromUtf8(line.trimmed()));
    }
    auto net = detail::loadOnnxNetwork(modelPath);
    if (!net)
        return nullptr;
    auto network = std::make_unique<Network>();
    network->net = std::move(*net);
    return std::unique_ptr<CenterNetObjectDetector>(
        new CenterNetObjectDetector(std::move(network), std::move(labels), minScore));
}

std::unique_ptr<CenterNetObjectDetector> CenterNetObjectDetector::installed(float minScore)
{
    const QString signal = QStringLiteral("物体检测");
    const QString model = detail::installedModel(signal, QString::fromLatin1(kModelPath));
    const QString labels = detail::installedModel(signal, QString::fromLatin1(kLabelsPath));
    return model.isEmpty() || labels.isEmpty() ? nullptr : load(model, labels, minScore);
}

ObjectDetections CenterNetObjectDetector::detect(const QImage& image)
{
    const cv::Mat bgr = detail::bgrMatFromImage(image);
    if (bgr.empty())
        return {{}, QStringLiteral("空图像")};
    ObjectDetections result;
    try {
        m_network->net.setInput(cv::dnn::blobFromImage(bgr, 1.0, cv::Size(kInputSide, kInputSide),
                                                       cv::Scalar(),
                                                       /*swapRB*/ true));
        std::vector<cv::Mat> outs;
        m_network->net.forward(outs, std::vector<cv::String>{"heatmap", "wh"});
        const cv::Mat& heatmap = outs[0];
        const cv::Mat& wh = outs[1];
        const int cols = wh.size[3];
        const double sx = double(bgr.cols) / kInputSide, sy = double(bgr.rows) / kInputSide;
        std::map<int, std::vector<Peak>> byClass;
        for (const Peak& p : peaks(heatmap, std::min(m_minScore, 0.2f)))
            byClass[p.cls].push_back(p);
        for (const auto& [cls, found] : byClass) {
            std::vector<cv::Rect2d> boxes;
            std::vector<float> scores;
            for (const Peak& p : found) {
                const auto distance = [&](int side) {
                    return double(wh.ptr<float>(0, side)[p.y * cols + p.x]);
                };
                const double left = kStride * p.x - distance(0), top = kStride * p.y - distance(1);
                const double right = kStride * p.x + distance(2), bottom = kStride * p.y + distance(3);
                boxes.emplace_back(left * sx, top * sy, (right - left) * sx, (bottom - top) * sy);
                scores.push_back(p.score);
            }
            std::vector<int> keep;
            cv::dnn::NMSBoxes(boxes, scores, m_minScore, kNmsOverlap, keep);
            for (int i : keep) {
                const cv::Rect2d& b = boxes[size_t(i)];
                result.objects.push_back({m_labels.value(cls, QStringLiteral("class_%1").arg(cls)),
                                          QRectF(b.x, b.y, b.width, b.height), scores[size_t(i)]});
            }
        }
    } catch (const std::exception& error) {
        return {{}, QString::fromUtf8(error.what())};
    }
    std::stable_sort(result.objects.begin(), result.objects.end(),
                     [](const DetectedObject& a, const DetectedObject& b) { return a.score > b.score; });
    return result;
}

} // namespace lumaro::platform
