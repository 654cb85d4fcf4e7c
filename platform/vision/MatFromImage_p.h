// SPDX-License-Identifier: GPL-3.0-or-later
// Hands a QImage to OpenCV as a BGR matrix; private to the OpenCV backends.
#pragma once

#include <QImage>

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace lumaro::platform::detail {

// A deep copy in 8-bit BGR (OpenCV's order), whatever the image's format; empty for a null image.
inline cv::Mat bgrMatFromImage(const QImage& image)
{
    if (image.isNull())
        return {};
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    const cv::Mat view(rgb.height(), rgb.width(), CV_8UC3, const_cast<uchar*>(rgb.constBits()),
                       static_cast<size_t>(rgb.bytesPerLine()));
    cv::Mat bgr;
    cv::cvtColor(view, bgr, cv::COLOR_RGB2BGR);
    return bgr;
}

} // namespace lumaro::platform::detail
