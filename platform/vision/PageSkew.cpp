// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/PageSkew_p.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace lumaro::platform::detail {

namespace {
constexpr double kMaxSkew = 15.0;
}

double skewFromLines(const std::vector<cv::RotatedRect>& lines)
{
    std::vector<double> angles;
    for (const cv::RotatedRect& line : lines) {
        cv::Point2f p[4];
        line.points(p);
        // The longer of two neighbouring edges runs along the line.
        const cv::Point2f a = p[1] - p[0], b = p[2] - p[1];
        const cv::Point2f along = cv::norm(a) >= cv::norm(b) ? a : b;
        const double length = cv::norm(along), across = std::min(cv::norm(a), cv::norm(b));
        if (length < 4 * across)
            continue;
        double degrees = std::atan2(along.y, along.x) * 180.0 / CV_PI;
        if (degrees > 90)
            degrees -= 180;
        if (degrees < -90)
            degrees += 180;
        if (std::abs(degrees) <= kMaxSkew)
            angles.push_back(degrees);
    }
    if (angles.empty())
        return 0.0;
    std::nth_element(angles.begin(), angles.begin() + long(angles.size() / 2), angles.end());
    return angles[angles.size() / 2];
}

std::vector<std::vector<cv::RotatedRect>> readingRows(const std::vector<cv::RotatedRect>& boxes)
{
    struct Placed
    {
        cv::RotatedRect box;
        double along, across, height;
    };
    // Centres turned so the page's lines run level.
    const double radians = skewFromLines(boxes) * CV_PI / 180.0;
    const double c = std::cos(radians), s = std::sin(radians);
    std::vector<Placed> placed;
    for (const cv::RotatedRect& box : boxes)
        placed.push_back({box, box.center.x * c + box.center.y * s, box.center.y * c - box.center.x * s,
                          double(std::min(box.size.width, box.size.height))});
    std::sort(placed.begin(), placed.end(), [](const Placed& a, const Placed& b) { return a.across < b.across; });
    std::vector<std::vector<Placed>> rows;
    double rowAcross = 0, rowHeight = 0;
    for (const Placed& p : placed) {
        if (rows.empty() || std::abs(p.across - rowAcross) > 0.5 * std::min(p.height, rowHeight)) {
            rows.emplace_back();
            rowAcross = p.across;
            rowHeight = p.height;
        }
        rows.back().push_back(p);
        rowAcross += (p.across - rowAcross) / double(rows.back().size()); // the row's mean
        rowHeight = std::max(rowHeight, p.height);
    }
    std::vector<std::vector<cv::RotatedRect>> ordered;
    for (std::vector<Placed>& row : rows) {
        std::sort(row.begin(), row.end(), [](const Placed& a, const Placed& b) { return a.along < b.along; });
        ordered.emplace_back();
        for (const Placed& p : row)
            ordered.back().push_back(p.box);
    }
    return ordered;
}

double skewFromProjection(const cv::Mat& gray)
{
    const double scale = std::min(1.0, 800.0 / std::max(gray.cols, gray.rows));
    cv::Mat small, ink;
    cv::resize(gray, small, cv::Size(), scale, scale, cv::INTER_AREA);
    cv::adaptiveThreshold(small, ink, 255, cv::ADAPTIVE_THRESH_MEAN_C, cv::THRESH_BINARY_INV, 25, 15);
    const cv::Point2f centre(ink.cols / 2.f, ink.rows / 2.f);
    double bestScore = -1, bestAngle = 0;
    for (double angle = -kMaxSkew; angle <= kMaxSkew + 1e-6; angle += 0.25) {
        cv::Mat turned, profile;
        cv::warpAffine(ink, turned, cv::getRotationMatrix2D(centre, angle, 1.0), ink.size(),
                       cv::INTER_NEAREST);
        cv::reduce(turned, profile, 1, cv::REDUCE_SUM, CV_64F);
        double score = 0;
        for (int y = 1; y < profile.rows; ++y) {
            const double step = profile.at<double>(y) - profile.at<double>(y - 1);
            score += step * step;
        }
        if (score > bestScore) {
            bestScore = score;
            bestAngle = angle;
        }
    }
    return bestAngle;
}

cv::Mat levelled(const cv::Mat& gray, double degrees)
{
    if (std::abs(degrees) < 0.2)
        return gray;
    cv::Mat rotation = cv::getRotationMatrix2D(cv::Point2f(gray.cols / 2.f, gray.rows / 2.f), degrees, 1.0);
    const double c = std::abs(rotation.at<double>(0, 0)), s = std::abs(rotation.at<double>(0, 1));
    const int width = int(gray.rows * s + gray.cols * c), height = int(gray.rows * c + gray.cols * s);
    rotation.at<double>(0, 2) += width / 2.0 - gray.cols / 2.0;
    rotation.at<double>(1, 2) += height / 2.0 - gray.rows / 2.0;
    cv::Mat out;
    cv::warpAffine(gray, out, rotation, cv::Size(width, height), cv::INTER_CUBIC, cv::BORDER_CONSTANT,
                   cv::Scalar(255));
    return out;
}

} // namespace lumaro::platform::detail
