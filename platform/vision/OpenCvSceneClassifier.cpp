// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/OpenCvSceneClassifier.h"

#include "platform/ForeignCall.h"
#include "platform/Log.h"
#include "platform/vision/MatFromImage_p.h"
#include "platform/vision/ModelFiles.h"

#include <QFile>
#include <QRegularExpression>

#include <opencv2/dnn.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <mutex>
#include <numeric>

namespace lumaro::platform {

struct OpenCvSceneClassifier::Network
{
    cv::dnn::Net net;
    bool describes = false; // the model has the pooled layer under the name this model gives it
};

namespace {

const QString kTag = QStringLiteral("VISION_INDEX");

// MobileNetV2's global average pool, flattened: the input of the classes' layer.
const std::string kDescriptionLayer = "onnx_node!Reshape_103";
const std::string kClassesLayer = "output";

// The network sees only the central 224×224 of the picture with its short side at 256, so of a panorama strip
// only a central piece matters: it is cut out first, or a 5000×1 strip would be resized to 1280000×256.
cv::Mat centralPiece(const cv::Mat& bgr)
{
    constexpr int kLongestRatio = 2;
    const int shortSide = std::min(bgr.cols, bgr.rows);
    const int width = std::min(bgr.cols, shortSide * kLongestRatio);
    const int height = std::min(bgr.rows, shortSide * kLongestRatio);
    return bgr(cv::Rect((bgr.cols - width) / 2, (bgr.rows - height) / 2, width, height));
}

// The network's input: RGB, scaled to [0, 1] and normalised with ImageNet's mean and deviation.
cv::Mat networkInput(const cv::Mat& bgr224)
{
    cv::Mat rgb;
    cv::cvtColor(bgr224, rgb, cv::COLOR_BGR2RGB);
    cv::Mat floats;
    rgb.convertTo(floats, CV_32F, 1.0 / 255.0);
    floats -= cv::Scalar(0.485, 0.456, 0.406);
    cv::divide(floats, cv::Scalar(0.229, 0.224, 0.225), floats);
    return cv::dnn::blobFromImage(floats);
}

cv::Mat centreCrop(const cv::Mat& whole)
{
    const cv::Mat bgr = centralPiece(whole);
    const double scale = 256.0 / std::min(bgr.cols, bgr.rows);
    cv::Mat resized;
    cv::resize(bgr, resized,
               cv::Size(std::max(224, int(std::lround(bgr.cols * scale))),
                        std::max(224, int(std::lround(bgr.rows * scale)))),
               0, 0, cv::INTER_AREA);
    return resized(cv::Rect((resized.cols - 224) / 2, (resized.rows - 224) / 2, 224, 224));
}

// The whole picture squeezed into the network's square: what lies outside the centre (a window's bars, the
// frame of a view) says what kind of picture it is as much as its middle does.
cv::Mat squeezed(const cv::Mat& whole)
{
    cv::Mat resized;
    cv::resize(whole, resized, cv::Size(224, 224), 0, 0, cv::INTER_AREA);
    return resized;
}

// ImageNet's classes are ordered by kind: the animals first (up to the puffer), the dishes, fruit and
// drinks from the plate to the eggnog (the hay among them is a field), and the flowers and fungi near
// the end.
QString kindOfClass(int index)
{
    if (index >= 0 && index <= 397)
        return QStringLiteral("animal");
    if (index >= 923 && index <= 969 && index != 958)
        return QStringLiteral("food");
    if (index >= 985 && index <= 998)
        return QStringLiteral("plant");
    return {};
}

} // namespace

QString snakeCaseIdentifier(const QString& label)
{
    static const QRegularExpression separators(QStringLiteral("[^\\p{L}\\p{N}]+"));
    QString identifier = label.toLower();
    identifier.remove(QLatin1Char('\''));
    identifier.replace(separators, QStringLiteral("_"));
    while (identifier.startsWith(QLatin1Char('_')))
        identifier.remove(0, 1);
    while (identifier.endsWith(QLatin1Char('_')))
        identifier.chop(1);
    return identifier;
}

OpenCvSceneClassifier::OpenCvSceneClassifier(std::unique_ptr<Network> network, QStringList identifiers)
    : m_network(std::move(network)), m_identifiers(std::move(identifiers))
{
}

OpenCvSceneClassifier::~OpenCvSceneClassifier() = default;

std::unique_ptr<OpenCvSceneClassifier> OpenCvSceneClassifier::load(const QString& modelPath,
                                                                   const QString& labelsPath)
{
    QFile labels(labelsPath);
    if (!labels.open(QIODevice::ReadOnly | QIODevice::Text)) {
        Log::line(kTag, QStringLiteral("❌ 无法读取分类标签: ") + labelsPath);
        return nullptr;
    }
    QStringList identifiers;
    for (const QByteArray& line : labels.readAll().split('\n')) {
        if (!line.trimmed().isEmpty())
            identifiers << snakeCaseIdentifier(QString::fromUtf8(line.trimmed()));
    }
    auto network = std::make_unique<Network>();
    try {
        network->net = cv::dnn::readNetFromONNX(modelPath.toStdString());
    } catch (const std::exception& error) {
        Log::line(kTag, QStringLiteral("❌ 分类模型加载失败: ") + QString::fromUtf8(error.what()));
        return nullptr;
    }
    if (network->net.empty())
        return nullptr;
    network->describes = network->net.getLayerId(kDescriptionLayer) >= 0;
    if (!network->describes)
        Log::line(kTag, QStringLiteral("⚠️ 分类模型没有池化层 ") +
                            QString::fromStdString(kDescriptionLayer) +
                            QStringLiteral("，图片类型只按规则判断: ") + modelPath);
    return std::unique_ptr<OpenCvSceneClassifier>(new OpenCvSceneClassifier(std::move(network), identifiers));
}

SceneClassification OpenCvSceneClassifier::classify(const QImage& image)
{
    return guardedForeignCall([&] { return classifyImage(image); },
                              [](const QString& reason) {
                                  return SceneClassification{{}, reason};
                              });
}

SceneClassification OpenCvSceneClassifier::classifyImage(const QImage& image)
{
    const cv::Mat bgr = detail::bgrMatFromImage(image);
    if (bgr.empty())
        return {{}, QStringLiteral("空图像")};
    m_network->net.setInput(networkInput(centreCrop(bgr)));
    std::vector<cv::Mat> outputs;
    if (m_network->describes) {
        const std::vector<std::string> both{kClassesLayer, kDescriptionLayer};
        m_network->net.forward(outputs, both);
        // The whole network runs again, not only up to the description: the results are the same, but a
        // forward stopping at an inner layer left the process in a state LeakSanitizer's scan at exit
        // crashed on (clang 14, in the analysis tests).
        std::vector<cv::Mat> whole;
        m_network->net.setInput(networkInput(squeezed(bgr)));
        m_network->net.forward(whole, both);
        outputs.push_back(whole[1]);
    } else {
        outputs.push_back(m_network->net.forward());
    }
    const cv::Mat logits = outputs.front().reshape(1, 1);
    const int classes = std::min<int>(logits.cols, int(m_identifiers.size()));
    if (classes == 0)
        return {{}, QStringLiteral("分类模型没有输出")};
    const float* values = logits.ptr<float>(0);
    const float top = *std::max_element(values, values + classes);
    std::vector<double> exps(classes);
    for (int i = 0; i < classes; ++i)
        exps[i] = std::exp(double(values[i] - top));
    const double sum = std::accumulate(exps.begin(), exps.end(), 0.0);
    std::vector<int> order(classes);
    std::iota(order.begin(), order.end(), 0);
    const int keep = std::min(kObservations, classes);
    std::partial_sort(order.begin(), order.begin() + keep, order.end(),
                      [&](int a, int b) { return exps[a] > exps[b]; });
    SceneClassification result;
    for (int i = 0; i < keep; ++i)
        result.observations.push_back(
            {m_identifiers[order[i]], float(exps[order[i]] / sum),
             m_identifiers.size() == kImageNetClasses ? kindOfClass(order[i]) : QString()});
    // The centre's description, then the whole picture's.
    for (size_t i = 1; i < outputs.size(); ++i) {
        std::vector<float> part;
        outputs[i].reshape(1, 1).convertTo(part, CV_32F);
        result.description.insert(result.description.end(), part.begin(), part.end());
    }
    return result;
}

std::unique_ptr<SceneClassifier> makeSceneClassifier()
{
    static std::once_flag reported;
    const QString model = ModelFiles::find(QStringLiteral("classification/mobilenetv2-12-int8.onnx"));
    const QString labels = ModelFiles::find(QStringLiteral("classification/imagenet1k_labels.txt"));
    if (!model.isEmpty() && !labels.isEmpty()) {
        if (auto classifier = OpenCvSceneClassifier::load(model, labels))
            return classifier;
    }
    std::call_once(reported, [] {
        Log::line(kTag, QStringLiteral("⚠️ 未找到场景分类模型，只做文字识别和人脸检测 (LUMARO_MODELS_DIR "
                                       "或 "
                                       "~/.local/share/lumaro/models，见 scripts/fetch-models.sh)"));
    });
    return nullptr;
}

} // namespace lumaro::platform
