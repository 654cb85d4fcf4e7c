// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/PageSkew_p.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using lumaro::platform::detail::readingRows;

namespace {

struct LevelBox
{
    char name;
    float x, y, width, height; // on the page before it was turned
};

// The boxes of a page turned by `degrees` (positive: lines run downhill to the right), given in `order`.
std::vector<cv::RotatedRect> turnedPage(const std::vector<LevelBox>& page, float degrees)
{
    const float r = degrees * float(CV_PI) / 180.f;
    std::vector<cv::RotatedRect> boxes;
    for (const LevelBox& b : page) {
        const cv::Point2f centre(b.x * std::cos(r) - b.y * std::sin(r) + 400, b.x * std::sin(r) + b.y * std::cos(r) + 300);
        boxes.emplace_back(centre, cv::Size2f(b.width, b.height), degrees);
    }
    return boxes;
}

// Rows written as the boxes' names, "/" between rows: "ab/cd".
std::string rowsOf(const std::vector<LevelBox>& page, const std::vector<std::vector<cv::RotatedRect>>& rows)
{
    std::string out;
    for (const auto& row : rows) {
        if (!out.empty())
            out += '/';
        for (const cv::RotatedRect& box : row) {
            for (const LevelBox& b : page) {
                const float r = box.angle * float(CV_PI) / 180.f;
                const float x = (box.center.x - 400) * std::cos(r) + (box.center.y - 300) * std::sin(r);
                const float y = (box.center.y - 300) * std::cos(r) - (box.center.x - 400) * std::sin(r);
                if (std::abs(x - b.x) < 1 && std::abs(y - b.y) < 1)
                    out += b.name;
            }
        }
    }
    return out;
}

TEST(ReadingRows, RowsFollowThePagesLinesHoweverItIsTurned)
{
    // A price list: a wide gap between each dish and its price, 40 px between lines. Turned 9°, a price sits
    // lower than the next line's dish, so a plain top-to-bottom sort reads the prices a line late.
    const std::vector<LevelBox> menu = {
        {'a', -250, -60, 200, 24}, {'b', 250, -60, 120, 24}, {'c', -250, -20, 200, 24},
        {'d', 250, -20, 120, 24},  {'e', -250, 20, 200, 24}, {'f', 250, 20, 120, 24},
    };
    // A page of long lines with a full stop the detector boxed apart at the end of the second line.
    const std::vector<LevelBox> lines = {
        {'a', 0, -40, 600, 24}, {'b', 0, 0, 560, 24}, {'c', 292, 4, 12, 12}, {'d', 0, 40, 600, 24},
    };
    const struct
    {
        const char* what;
        const std::vector<LevelBox>& page;
        float degrees;
        std::vector<int> order; // the detector's order of the boxes
        std::string rows;
    } cases[] = {
        {"level menu", menu, 0, {5, 4, 3, 2, 1, 0}, "ab/cd/ef"},
        {"menu downhill", menu, 9, {0, 2, 1, 4, 3, 5}, "ab/cd/ef"},
        {"menu uphill", menu, -12, {1, 3, 5, 0, 2, 4}, "ab/cd/ef"},
        {"mark apart, level", lines, 0, {2, 3, 1, 0}, "a/bc/d"},
        {"mark apart, turned", lines, -7, {3, 2, 1, 0}, "a/bc/d"},
    };
    for (const auto& c : cases) {
        const std::vector<cv::RotatedRect> all = turnedPage(c.page, c.degrees);
        std::vector<cv::RotatedRect> given;
        for (int i : c.order)
            given.push_back(all[size_t(i)]);
        EXPECT_EQ(rowsOf(c.page, readingRows(given)), c.rows) << c.what;
    }
    EXPECT_TRUE(readingRows({}).empty());
}

} // namespace
