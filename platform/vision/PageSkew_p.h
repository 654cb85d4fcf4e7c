// SPDX-License-Identifier: GPL-3.0-or-later
// How far a page of text is turned, and the page turned level; private to the text backends.
#pragma once

#include <opencv2/core.hpp>

#include <vector>

namespace lumaro::platform::detail {

// Both estimates give the angle levelled() turns the page by, within ±15° (positive when the lines run
// downhill to the right). From the long text-line boxes a detector found: their median; 0 when no box is
// long enough to tell.
double skewFromLines(const std::vector<cv::RotatedRect>& lines);

// The boxes in the order a reader takes them: rows top to bottom, each row left to right, the rows found along
// the page's own lines so a turned page's rows do not interleave. Boxes whose centres lie within half a line's
// height of each other across the lines share a row.
std::vector<std::vector<cv::RotatedRect>> readingRows(const std::vector<cv::RotatedRect>& boxes);

// From the page alone: the turn whose row profile of ink is sharpest, searched over ±15° in quarter degrees
// on a small binarised copy. For when no line detector is installed.
double skewFromProjection(const cv::Mat& gray);

// The page turned counter-clockwise by `degrees`, grown to keep every corner, white around it.
cv::Mat levelled(const cv::Mat& gray, double degrees);

} // namespace lumaro::platform::detail
