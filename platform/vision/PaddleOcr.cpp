// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/PaddleOcr_p.h"

#include "platform/Log.h"

#include <QFile>

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>

namespace lumaro::platform::detail {

namespace {

// The detector's input: the picture fitted into one square for both orientations. OpenCV 4.6 cannot run one
// net at a second input size, and a net per shape held a second set of page-sized maps (about 200 MB) as
// soon as a folder mixed upright and lying pictures. A 3:2 or 4:3 picture is scaled as in a 960 × 736 input.
constexpr int kPageSide = 960;
// A strip (the band along a picture's edge where stamps and captions sit) is fitted into 1920 × 320 by a net
// of its own, imported when the first strip comes: in the square it would leave four fifths of the detector's
// work to padding.
constexpr int kStripLong = 1920;
constexpr int kStripShort = 320;
constexpr int kStripAspect = 3; // width over height from which a picture is a strip
constexpr float kTextThreshold = 0.3f;
constexpr double kBoxThreshold = 0.6;
constexpr double kUnclip = 1.5;
constexpr int kLineHeight = 48;
constexpr qint64 kMaxModelBytes = 64 << 20;
// Recogniser input widths: a line is padded up to the next one, so at most two nets are ever made. A longer
// line is read in overlapping chunks of the widest: a net per wider bucket (1280 and 2560) held its maps,
// about 60 MB for the widest, for the rest of the run once one long line had come.
constexpr int kWidthBuckets[] = {320, 640};
constexpr int kChunkWidth = 640;
constexpr int kChunkOverlap = 128;
constexpr int kMaxLineWidth = 2560; // a longer line is squeezed to this

std::optional<QByteArray> readSmallFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMaxModelBytes)
        return std::nullopt;
    return file.readAll();
}

// The recogniser graph declares its input as [1, 3, 48, 320]; OpenCV sizes the net from that declaration.
// A width is a two-byte varint for every bucket, so it is changed in place without re-encoding the graph.
QByteArray withInputWidth(QByteArray graph, int width)
{
    static const QByteArray declared = QByteArray::fromHex("0a0208010a0208030a0208300a0308c002");
    const qsizetype at = graph.indexOf(declared);
    if (at < 0)
        return graph;
    const qsizetype varint = at + declared.size() - 2;
    graph[varint] = char(0x80 | (width & 0x7f));
    graph[varint + 1] = char(width >> 7);
    return graph;
}

// Written straight into the [1, 3, H, W] blob, channel by channel in RGB order: a page-sized picture made no
// float copies of its own (they were about 25 MB at the detector's size).
cv::Mat normalisedBlob(const cv::Mat& bgr, const cv::Scalar& mean, const cv::Scalar& std)
{
    const int size[] = {1, 3, bgr.rows, bgr.cols};
    cv::Mat blob(4, size, CV_32F);
    std::vector<cv::Mat> planes;
    cv::split(bgr, planes);
    for (int c = 0; c < 3; ++c) {
        cv::Mat plane(bgr.rows, bgr.cols, CV_32F, blob.ptr<float>(0, c));
        const double scale = 1.0 / (255.0 * std[c]);
        planes[size_t(2 - c)].convertTo(plane, CV_32F, scale, -mean[c] / std[c]);
    }
    return blob;
}

std::vector<cv::Point2f> corners(const cv::RotatedRect& box)
{
    cv::Point2f p[4];
    box.points(p);
    std::vector<cv::Point2f> pts(p, p + 4);
    // top-left, top-right, bottom-right, bottom-left
    const auto bySum = [](const cv::Point2f& a, const cv::Point2f& b) { return a.x + a.y < b.x + b.y; };
    const auto byDiff = [](const cv::Point2f& a, const cv::Point2f& b) { return a.y - a.x < b.y - b.x; };
    return {
        *std::min_element(pts.begin(), pts.end(), bySum), *std::min_element(pts.begin(), pts.end(), byDiff),
        *std::max_element(pts.begin(), pts.end(), bySum), *std::max_element(pts.begin(), pts.end(), byDiff)};
}

cv::Mat lineCrop(const cv::Mat& bgr, const cv::RotatedRect& box)
{
    const std::vector<cv::Point2f> p = corners(box);
    const int width = std::max(1, int(std::max(cv::norm(p[0] - p[1]), cv::norm(p[2] - p[3]))));
    const int height = std::max(1, int(std::max(cv::norm(p[0] - p[3]), cv::norm(p[1] - p[2]))));
    const std::vector<cv::Point2f> target{
        {0, 0}, {float(width), 0}, {float(width), float(height)}, {0, float(height)}};
    cv::Mat crop;
    cv::warpPerspective(bgr, crop, cv::getPerspectiveTransform(p, target), cv::Size(width, height),
                        cv::INTER_CUBIC, cv::BORDER_REPLICATE);
    if (height >= 1.5 * width)
        cv::rotate(crop, crop, cv::ROTATE_90_COUNTERCLOCKWISE);
    return crop;
}

} // namespace

cv::Size PaddleOcr::detectorInput(cv::Size picture)
{
    if (picture.width >= kStripAspect * picture.height)
        return {kStripLong, kStripShort};
    return {kPageSide, kPageSide};
}

struct PaddleOcr::Networks
{
    struct Guarded
    {
        std::mutex lock;
        cv::dnn::Net net;
    };
    // The graphs are read again for each net made (the strip detector, the wider recogniser): kept in memory
    // for the run they were 25 MB of copies.
    QString detectorPath;
    QString recogniserPath;
    Guarded detector;   // imported at kPageSide × kPageSide
    Guarded strip;      // the detector for strips, imported at the first
    std::mutex mapLock; // guards the recognisers' map; each net has its own lock for its forward passes
    std::map<int, std::unique_ptr<Guarded>> recognisers;

    Guarded& recogniserFor(int width)
    {
        std::lock_guard lock(mapLock);
        auto& slot = recognisers[width];
        if (!slot) {
            auto made = std::make_unique<Guarded>();
            made->net = imported(recogniserPath, width);
            slot = std::move(made);
        }
        return *slot;
    }

    // The graph at `path`, the recogniser's input made `recogniserWidth` wide when given. Throws
    // cv::Exception, or std::runtime_error when the file cannot be read.
    static cv::dnn::Net imported(const QString& path, int recogniserWidth = 0)
    {
        std::optional<QByteArray> graph = readSmallFile(path);
        if (!graph)
            throw std::runtime_error("cannot read " + path.toStdString());
        if (recogniserWidth > 0)
            graph = withInputWidth(std::move(*graph), recogniserWidth);
        return cv::dnn::readNetFromONNX(graph->constData(), size_t(graph->size()));
    }

    // The set every live instance shares; made again after the last instance has gone.
    static std::shared_ptr<Networks> shared(const QString& detector, const QString& recogniser)
    {
        static std::mutex lock;
        static std::weak_ptr<Networks> current;
        std::lock_guard guard(lock);
        if (auto existing = current.lock();
            existing && existing->detectorPath == detector && existing->recogniserPath == recogniser)
            return existing;
        auto made = std::make_shared<Networks>();
        made->detectorPath = detector;
        made->recogniserPath = recogniser;
        current = made;
        return made;
    }
};

PaddleOcr::PaddleOcr(std::shared_ptr<Networks> networks, QStringList keys)
    : m_networks(std::move(networks)), m_keys(std::move(keys))
{
}

cv::Mat PaddleOcr::detectorForward(cv::Size input, const cv::Mat& blob)
{
    Networks::Guarded& guarded = input.height == kStripShort ? m_networks->strip : m_networks->detector;
    std::lock_guard lock(guarded.lock);
    if (guarded.net.empty())
        guarded.net = Networks::imported(m_networks->detectorPath);
    guarded.net.setInput(blob);
    return guarded.net.forward().clone();
}

cv::Mat PaddleOcr::forward(int recogniserWidth, const cv::Mat& blob)
{
    Networks::Guarded& guarded = m_networks->recogniserFor(recogniserWidth);
    std::lock_guard lock(guarded.lock);
    guarded.net.setInput(blob);
    return guarded.net.forward().clone();
}

PaddleOcr::~PaddleOcr() = default;

std::unique_ptr<PaddleOcr> PaddleOcr::load(const QString& detectorPath, const QString& recogniserPath,
                                           const QString& keysPath)
{
    const auto keys = readSmallFile(keysPath);
    if (!keys) {
        Log::line(QStringLiteral("VISION_INDEX"), QStringLiteral("❌ 无法读取文字模型"));
        return nullptr;
    }
    QStringList dictionary{QString()};
    for (const QString& line : QString::fromUtf8(*keys).split(QLatin1Char('\n'))) {
        QString key = line;
        if (key.endsWith(QLatin1Char('\r')))
            key.chop(1);
        if (!key.isEmpty())
            dictionary << key;
    }
    dictionary << QStringLiteral(" ");
    auto ocr =
        std::unique_ptr<PaddleOcr>(new PaddleOcr(Networks::shared(detectorPath, recogniserPath), dictionary));
    // Both graphs must import here, not halfway through a run.
    try {
        std::lock_guard lock(ocr->m_networks->detector.lock);
        if (ocr->m_networks->detector.net.empty())
            ocr->m_networks->detector.net = Networks::imported(detectorPath);
        ocr->m_networks->recogniserFor(kWidthBuckets[0]);
    } catch (const std::runtime_error& error) {
        Log::line(QStringLiteral("VISION_INDEX"), QStringLiteral("❌ 无法读取文字模型"));
        return nullptr;
    } catch (const std::exception& error) {
        Log::line(QStringLiteral("VISION_INDEX"),
                  QStringLiteral("❌ 文字模型加载失败: ") + QString::fromUtf8(error.what()));
        return nullptr;
    }
    return ocr;
}

std::vector<cv::RotatedRect> PaddleOcr::detect(const cv::Mat& bgr)
{
    const cv::Size input = detectorInput(bgr.size());
    const double scale = std::min(double(input.width) / bgr.cols, double(input.height) / bgr.rows);
    const cv::Size fitted(std::max(1, int(bgr.cols * scale)), std::max(1, int(bgr.rows * scale)));
    // Padded with the page's own edge so the border draws no text edge.
    cv::Mat resized;
    cv::resize(bgr, resized, fitted, 0, 0, cv::INTER_AREA);
    cv::Mat page;
    cv::copyMakeBorder(resized, page, 0, input.height - fitted.height, 0, input.width - fitted.width,
                       cv::BORDER_REPLICATE);
    const cv::Mat out =
        detectorForward(input, normalisedBlob(page, {0.485, 0.456, 0.406}, {0.229, 0.224, 0.225}));
    const cv::Mat probability(out.size[2], out.size[3], CV_32F, const_cast<float*>(out.ptr<float>(0, 0)));
    const cv::Mat mask = probability > kTextThreshold;
    std::vector<std::vector<cv::Point>> contours;
    cv::findContours(mask, contours, cv::RETR_LIST, cv::CHAIN_APPROX_SIMPLE);
    std::vector<cv::RotatedRect> boxes;
    cv::Mat fill = cv::Mat::zeros(probability.size(), CV_8U);
    for (size_t i = 0; i < contours.size() && boxes.size() < 1000; ++i) {
        const auto& contour = contours[i];
        if (contour.size() < 4)
            continue;
        cv::RotatedRect rect = cv::minAreaRect(contour);
        if (std::min(rect.size.width, rect.size.height) < 3)
            continue;
        const cv::Rect bounds = cv::boundingRect(contour) & cv::Rect(0, 0, fill.cols, fill.rows);
        fill(bounds).setTo(0);
        cv::drawContours(fill, contours, int(i), cv::Scalar(1), cv::FILLED);
        if (cv::mean(probability(bounds), fill(bounds))[0] < kBoxThreshold)
            continue;
        const double grow = cv::contourArea(contour) * kUnclip / std::max(cv::arcLength(contour, true), 1e-6);
        rect.size.width += float(2 * grow);
        rect.size.height += float(2 * grow);
        if (std::min(rect.size.width, rect.size.height) < 5)
            continue;
        rect.center /= scale;
        rect.size.width /= float(scale);
        rect.size.height /= float(scale);
        boxes.push_back(rect);
    }
    return boxes;
}

cv::Mat PaddleOcr::logitsOf(const cv::Mat& strip, int width)
{
    cv::Mat padded(kLineHeight, width, CV_8UC3, cv::Scalar(128, 128, 128));
    strip.copyTo(padded(cv::Rect(0, 0, strip.cols, kLineHeight)));
    const cv::Mat out =
        forward(width, normalisedBlob(padded, {0.5, 0.5, 0.5}, {0.5, 0.5, 0.5})); // [1, T, classes]
    return cv::Mat(out.size[1], out.size[2], CV_32F, const_cast<float*>(out.ptr<float>(0, 0))).clone();
}

cv::Mat PaddleOcr::lineLogits(const cv::Mat& strip)
{
    if (strip.cols <= kChunkWidth)
        return logitsOf(strip, strip.cols <= kWidthBuckets[0] ? kWidthBuckets[0] : kChunkWidth);
    // Overlapping chunks, joined inside each overlap at a step both read as blank: a cut at a fixed place
    // could fall inside a character, which neither chunk then read whole.
    const auto blank = [](const cv::Mat& logits, int step) {
        const float* row = logits.ptr<float>(step);
        return std::max_element(row, row + logits.cols) == row;
    };
    cv::Mat rows;
    int start = 0;
    for (int x = 0; x < strip.cols; x += kChunkWidth - kChunkOverlap) {
        const int width = std::min(kChunkWidth, strip.cols - x);
        const cv::Mat logits = logitsOf(strip(cv::Rect(x, 0, width, kLineHeight)), kChunkWidth);
        const int first = x * logits.rows / kChunkWidth; // the chunk's first step along the line
        if (rows.empty()) {
            rows = logits;
        } else {
            const int from = first + 2, to = start + logits.rows - 2, middle = (from + to) / 2;
            int cut = middle;
            for (int offset = 0; offset <= (to - from) / 2; ++offset) {
                if (blank(rows, middle - offset) && blank(logits, middle - offset - first)) {
                    cut = middle - offset;
                    break;
                }
                if (blank(rows, middle + offset) && blank(logits, middle + offset - first)) {
                    cut = middle + offset;
                    break;
                }
            }
            rows.pop_back(size_t(rows.rows - cut));
            rows.push_back(logits.rowRange(cut - first, logits.rows));
        }
        start = first;
        if (x + width >= strip.cols)
            break;
    }
    return rows;
}

ReadLine PaddleOcr::read(const cv::Mat& bgr, const cv::RotatedRect& box)
{
    const cv::Mat crop = lineCrop(bgr, box);
    const int scaledWidth =
        std::clamp(int(std::ceil(double(kLineHeight) * crop.cols / crop.rows)), 1, kMaxLineWidth);
    cv::Mat strip;
    cv::resize(crop, strip, cv::Size(scaledWidth, kLineHeight), 0, 0, cv::INTER_LINEAR);
    const cv::Mat logits = lineLogits(strip); // [steps, classes]
    const int steps = logits.rows, classes = logits.cols;
    ReadLine line;
    double confidenceSum = 0;
    int characters = 0, previous = 0;
    for (int t = 0; t < steps; ++t) {
        const float* row = logits.ptr<float>(t);
        const int best = int(std::max_element(row, row + classes) - row);
        if (best != 0 && best != previous && best < m_keys.size()) {
            // The softmax over all 6,625 classes only for the steps that give a character: most steps of a
            // line are blanks or repeats, whose probabilities nothing uses.
            double sum = 0;
            for (int c = 0; c < classes; ++c)
                sum += std::exp(double(row[c] - row[best]));
            line.text += m_keys[best];
            for (qsizetype unit = 0; unit < m_keys[best].size(); ++unit)
                line.characters << float(1.0 / sum);
            confidenceSum += 1.0 / sum;
            ++characters;
        }
        previous = best;
    }
    line.confidence = characters > 0 ? float(confidenceSum / characters) : 0.f;
    return line;
}

} // namespace lumaro::platform::detail
