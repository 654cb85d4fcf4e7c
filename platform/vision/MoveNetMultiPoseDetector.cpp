// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/MoveNetMultiPoseDetector.h"

#include "platform/vision/Letterbox_p.h"
#include "platform/vision/MatFromImage_p.h"
#include "platform/vision/OnnxNetwork_p.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <exception>
#include <numeric>

namespace lumaro::platform {

struct MoveNetMultiPoseDetector::Network
{
    cv::dnn::Net net;
};

namespace {

constexpr int kMaxPeople = 6;
// The constants of the graph's own decoding, which this reproduces (peak test, distance weight, joint floor).
constexpr float kPeakTolerance = 1.0132789611816406e-06f;
constexpr float kDistanceWeight = 0.300048828125f;
constexpr float kJointFloor = 0.126953125f;

struct Heads
{
    cv::Mat center, heatmap, regress, offset, boxScale, boxOffset; // each [1, C, H, W]
    int rows = 0, cols = 0;

    float at(const cv::Mat& head, int channel, int y, int x) const
    {
        return head.ptr<float>(0, channel)[y * cols + x];
    }
};

struct Centre
{
    int y = 0, x = 0;
    float score = 0.f;
};

std::vector<Centre> centres(const Heads& heads)
{
    const cv::Mat map(heads.rows, heads.cols, CV_32F, const_cast<float*>(heads.center.ptr<float>(0, 0)));
    cv::Mat pooled;
    cv::dilate(map, pooled, cv::getStructuringElement(cv::MORPH_RECT, cv::Size(5, 5)));
    std::vector<Centre> peaks;
    for (int y = 0; y < heads.rows; ++y) {
        for (int x = 0; x < heads.cols; ++x) {
            const float value = map.at<float>(y, x);
            peaks.push_back({y, x, std::abs(value - pooled.at<float>(y, x)) < kPeakTolerance ? value : 0.f});
        }
    }
    std::stable_sort(peaks.begin(), peaks.end(),
                     [](const Centre& a, const Centre& b) { return a.score > b.score; });
    peaks.resize(std::min<size_t>(peaks.size(), kMaxPeople));
    return peaks;
}

struct GridBox
{
    float top, left, bottom, right;
    bool contains(int y, int x) const { return y >= top && y < bottom && x >= left && x < right; }
};

GridBox gridBox(const Heads& h, const Centre& c)
{
    const float height = std::max(h.at(h.boxScale, 0, c.y, c.x), 0.f);
    const float width = std::max(h.at(h.boxScale, 1, c.y, c.x), 0.f);
    const float cy = float(c.y) + h.at(h.boxOffset, 0, c.y, c.x);
    const float cx = float(c.x) + h.at(h.boxOffset, 1, c.y, c.x);
    return {std::clamp(cy - height / 2, 0.f, float(h.rows)), std::clamp(cx - width / 2, 0.f, float(h.cols)),
            std::clamp(cy + height / 2, 0.f, float(h.rows)), std::clamp(cx + width / 2, 0.f, float(h.cols))};
}

// weighted[i][k]: keypoint k's heatmap weighted by the distance to where person i's centre regresses it.
std::vector<std::vector<cv::Mat>> weightedHeatmaps(const Heads& h, const std::vector<Centre>& cs,
                                                   const std::vector<GridBox>& boxes)
{
    const float spread = kDistanceWeight * float(std::min(h.rows, h.cols));
    std::vector<std::vector<cv::Mat>> weighted(cs.size());
    for (size_t i = 0; i < cs.size(); ++i) {
        for (int k = 0; k < kBodyKeypointCount; ++k) {
            const float ry = float(cs[i].y) + h.at(h.regress, 2 * k, cs[i].y, cs[i].x);
            const float rx = float(cs[i].x) + h.at(h.regress, 2 * k + 1, cs[i].y, cs[i].x);
            cv::Mat map(h.rows, h.cols, CV_32F);
            for (int y = 0; y < h.rows; ++y) {
                float* row = map.ptr<float>(y);
                for (int x = 0; x < h.cols; ++x) {
                    const float d2 = (float(y) - ry) * (float(y) - ry) + (float(x) - rx) * (float(x) - rx);
                    row[x] =
                        boxes[i].contains(y, x) ? h.at(h.heatmap, k, y, x) * std::exp(-d2 / spread) : 0.f;
                }
            }
            weighted[i].push_back(map);
        }
    }
    return weighted;
}

} // namespace

MoveNetMultiPoseDetector::MoveNetMultiPoseDetector(std::unique_ptr<Network> network, int inputSide,
                                                   float minScore)
    : m_network(std::move(network)), m_inputSide(inputSide), m_minScore(minScore)
{
}

MoveNetMultiPoseDetector::~MoveNetMultiPoseDetector() = default;

std::unique_ptr<MoveNetMultiPoseDetector> MoveNetMultiPoseDetector::load(const QString& modelPath,
                                                                         int inputSide, float minScore)
{
    auto net = detail::loadOnnxNetwork(modelPath);
    if (!net)
        return nullptr;
    auto network = std::make_unique<Network>();
    network->net = std::move(*net);
    const int side = std::max(32, inputSide / 32 * 32);
    return std::unique_ptr<MoveNetMultiPoseDetector>(
        new MoveNetMultiPoseDetector(std::move(network), side, minScore));
}

std::unique_ptr<MoveNetMultiPoseDetector> MoveNetMultiPoseDetector::installed(int inputSide, float minScore)
{
    const QString path = detail::installedModel(QStringLiteral("人物检测"), QString::fromLatin1(kModelPath));
    return path.isEmpty() ? nullptr : load(path, inputSide, minScore);
}

PersonDetections MoveNetMultiPoseDetector::detect(const QImage& image)
{
    const cv::Mat bgr = detail::bgrMatFromImage(image);
    if (bgr.empty())
        return {{}, QStringLiteral("空图像")};
    PersonDetections result;
    try {
        const detail::Letterbox box = detail::letterboxed(bgr, m_inputSide);
        m_network->net.setInput(
            cv::dnn::blobFromImage(box.square, 1.0, cv::Size(), cv::Scalar(), /*swapRB*/ true));
        std::vector<cv::Mat> outs;
        m_network->net.forward(outs, std::vector<cv::String>{"center", "heatmap", "regress", "offset",
                                                             "box_scale", "box_offset"});
        Heads h{outs[0], outs[1], outs[2], outs[3], outs[4], outs[5], outs[0].size[2], outs[0].size[3]};
        const std::vector<Centre> cs = centres(h);
        std::vector<GridBox> boxes;
        for (const Centre& c : cs)
            boxes.push_back(gridBox(h, c));
        const auto weighted = weightedHeatmaps(h, cs, boxes);
        for (size_t i = 0; i < cs.size(); ++i) {
            PersonDetection person;
            float sum = 0.f;
            int good = 0;
            for (int k = 0; k < kBodyKeypointCount; ++k) {
                cv::Point peak;
                cv::minMaxLoc(weighted[i][k], nullptr, nullptr, nullptr, &peak);
                // The graph scores a joint with the best of all people's weighted maps at that cell.
                float score = 0.f;
                for (size_t j = 0; j < cs.size(); ++j)
                    score = std::max(score, weighted[j][k].at<float>(peak));
                const double y = (peak.y + h.at(h.offset, 2 * k, peak.y, peak.x)) / h.rows;
                const double x = (peak.x + h.at(h.offset, 2 * k + 1, peak.y, peak.x)) / h.cols;
                person.keypoints[size_t(k)] = {QPointF(box.toPictureX(x), box.toPictureY(y)), score};
                if (score > kJointFloor) {
                    sum += score;
                    ++good;
                }
            }
            person.score = cs[i].score * (good > 0 ? sum / float(good) : 0.f);
            if (person.score < m_minScore)
                continue;
            const QPointF topLeft(box.toPictureX(boxes[i].left / h.cols),
                                  box.toPictureY(boxes[i].top / h.rows));
            const QPointF bottomRight(box.toPictureX(boxes[i].right / h.cols),
                                      box.toPictureY(boxes[i].bottom / h.rows));
            person.box = QRectF(topLeft, bottomRight).intersected(QRectF(0, 0, bgr.cols, bgr.rows));
            result.people.push_back(person);
        }
    } catch (const std::exception& error) {
        return {{}, QString::fromUtf8(error.what())};
    }
    std::stable_sort(result.people.begin(), result.people.end(),
                     [](const PersonDetection& a, const PersonDetection& b) { return a.score > b.score; });
    return result;
}

} // namespace lumaro::platform
