// SPDX-License-Identifier: GPL-3.0-or-later
// The drawing hint through cv::dnn: the first of the model's five classes (Drawing, Hentai, Neutral, Porn,
// Sexy). The others are unreliable on ordinary photos and are never reported.
#include "platform/vision/DrawingClassifier.h"

#include "platform/vision/MatFromImage_p.h"
#include "platform/vision/OnnxNetwork_p.h"

#include <exception>

namespace lumaro::platform {

namespace {

constexpr int kInputSide = 224;
const char* const kModelPath = "illustration/nsfwjs_mobilenet_v2_224.onnx";

class OpenCvDrawingClassifier final : public DrawingClassifier
{
public:
    explicit OpenCvDrawingClassifier(cv::dnn::Net net) : m_net(std::move(net)) {}

    DrawingScore score(const QImage& image) override
    {
        const cv::Mat bgr = detail::bgrMatFromImage(image);
        if (bgr.empty())
            return {0.f, QStringLiteral("空图像")};
        try {
            cv::Mat small;
            cv::resize(bgr, small, cv::Size(kInputSide, kInputSide), 0, 0, cv::INTER_AREA);
            m_net.setInput(
                cv::dnn::blobFromImage(small, 1.0 / 255.0, cv::Size(), cv::Scalar(), /*swapRB*/ true));
            const cv::Mat probabilities = m_net.forward().reshape(1, 1);
            if (probabilities.cols < 1)
                return {0.f, QStringLiteral("插画模型没有输出")};
            return {probabilities.at<float>(0, 0), {}};
        } catch (const std::exception& error) {
            return {0.f, QString::fromUtf8(error.what())};
        }
    }

private:
    cv::dnn::Net m_net;
};

} // namespace

std::unique_ptr<DrawingClassifier> makeDrawingClassifier()
{
    const QString path = detail::installedModel(QStringLiteral("插画判断"), QString::fromLatin1(kModelPath));
    if (path.isEmpty())
        return nullptr;
    auto net = detail::loadOnnxNetwork(path);
    return net ? std::make_unique<OpenCvDrawingClassifier>(std::move(*net)) : nullptr;
}

} // namespace lumaro::platform
