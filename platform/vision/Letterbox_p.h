// SPDX-License-Identifier: GPL-3.0-or-later
// A picture fitted into a black square of the network's input size, and the way back; private to the
// backends.
#pragma once

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace lumaro::platform::detail {

struct Letterbox
{
    cv::Mat square;     // side × side, the picture centred, black around it
    double scale = 1.0; // square pixels per picture pixel
    double padX = 0.0;  // where the picture starts in the square, in square pixels
    double padY = 0.0;

    // A point given in the square's normalised coordinates (0..1) as picture pixels.
    double toPictureX(double normalised) const { return (normalised * square.cols - padX) / scale; }
    double toPictureY(double normalised) const { return (normalised * square.rows - padY) / scale; }
};

inline Letterbox letterboxed(const cv::Mat& picture, int side)
{
    Letterbox box;
    box.scale = double(side) / std::max(picture.cols, picture.rows);
    const int width = std::clamp(int(std::lround(picture.cols * box.scale)), 1, side);
    const int height = std::clamp(int(std::lround(picture.rows * box.scale)), 1, side);
    box.padX = (side - width) / 2;
    box.padY = (side - height) / 2;
    box.square = cv::Mat::zeros(side, side, picture.type());
    cv::resize(picture, box.square(cv::Rect(int(box.padX), int(box.padY), width, height)),
               cv::Size(width, height), 0, 0, cv::INTER_AREA);
    return box;
}

} // namespace lumaro::platform::detail
