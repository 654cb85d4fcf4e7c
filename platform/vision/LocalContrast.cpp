// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/LocalContrast.h"

#include "platform/vision/MatFromImage_p.h"

namespace lumaro::platform {

namespace {

constexpr double kWindowSigma = 12.0; // pixels: a letter of the enlarged regions the reader is given
constexpr double kGain = 64.0;        // grey levels per local standard deviation
constexpr double kNoiseFloor = 4.0;   // grey levels: JPEG noise on a flat wall is not raised into texture

} // namespace

QImage withLocalContrast(const QImage& image)
{
    if (image.isNull())
        return {};
    cv::Mat grey;
    cv::cvtColor(detail::bgrMatFromImage(image), grey, cv::COLOR_BGR2GRAY);
    cv::Mat lightness;
    grey.convertTo(lightness, CV_32F);
    cv::Mat mean, meanOfSquares;
    cv::GaussianBlur(lightness, mean, cv::Size(), kWindowSigma);
    cv::GaussianBlur(lightness.mul(lightness), meanOfSquares, cv::Size(), kWindowSigma);
    cv::Mat spread;
    cv::sqrt(cv::max(meanOfSquares - mean.mul(mean), 0.0), spread);
    cv::Mat raised = (lightness - mean) / (spread + kNoiseFloor) * kGain + 128.0;
    cv::Mat out;
    raised.convertTo(out, CV_8U); // saturates at 0 and 255
    return QImage(out.data, out.cols, out.rows, int(out.step), QImage::Format_Grayscale8)
        .convertToFormat(QImage::Format_RGB32);
}

} // namespace lumaro::platform
