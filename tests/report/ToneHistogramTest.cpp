// SPDX-License-Identifier: GPL-3.0-or-later
// The tone histogram counts each channel and the Rec. 709 luminance, and the clipped shares at both ends.
#include "report/ToneHistogram.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace lumaro::report {
namespace {

TEST(ToneHistogram, CountsChannelsLuminanceAndClipping)
{
    // 10 × 10: 50 black, 20 white, 20 pure red, 10 mid grey (128).
    QImage image(10, 10, QImage::Format_RGB888);
    image.fill(Qt::black);
    QPainter painter(&image);
    painter.fillRect(0, 5, 10, 2, Qt::white);
    painter.fillRect(0, 7, 10, 2, QColor(255, 0, 0));
    painter.fillRect(0, 9, 10, 1, QColor(128, 128, 128));
    painter.end();

    const ToneHistogram h = ToneHistogram::of(image);
    EXPECT_EQ(h.pixels, 100u);
    EXPECT_EQ(h.red[255], 40u);
    EXPECT_EQ(h.red[0], 50u);
    EXPECT_EQ(h.green[0], 70u);
    EXPECT_EQ(h.blue[128], 10u);
    EXPECT_EQ(h.luminance[0], 50u);
    EXPECT_EQ(h.luminance[255], 20u);
    EXPECT_EQ(h.luminance[54], 20u); // 0.2126 × 255
    EXPECT_EQ(h.luminance[128], 10u);
    EXPECT_DOUBLE_EQ(h.shadowPercent(), 50.0);
    EXPECT_DOUBLE_EQ(h.highlightPercent(), 40.0); // white and the blown red channel
}

TEST(ToneHistogram, SkipsTransparentPixelsAndEmptyImages)
{
    QImage image(4, 1, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    image.setPixel(0, 0, qRgba(255, 255, 255, 255));
    const ToneHistogram h = ToneHistogram::of(image);
    EXPECT_EQ(h.pixels, 1u);
    EXPECT_DOUBLE_EQ(h.highlightPercent(), 100.0);
    EXPECT_TRUE(ToneHistogram::of(QImage()).isEmpty());
}

} // namespace
} // namespace lumaro::report
