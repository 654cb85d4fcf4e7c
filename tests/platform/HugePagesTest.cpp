// SPDX-License-Identifier: GPL-3.0-or-later
// Full-size pictures turned in huge-page memory come out exactly as Qt turns them, edges and odd sizes too.
#include "platform/picture/HugePages.h"

#include <QTransform>

#include <gtest/gtest.h>

namespace lumaro::platform {
namespace {

class HugePagesTurnTest : public ::testing::TestWithParam<int>
{
};

TEST_P(HugePagesTurnTest, AQuarterTurnMatchesQt)
{
    // Large enough for huge pages, and neither side a multiple of the 64-pixel tiles.
    QImage picture = HugePages::image(QSize(2049, 1031), QImage::Format_RGB32);
    ASSERT_FALSE(picture.isNull());
    for (int y = 0; y < picture.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x)
            line[x] = qRgb(x & 255, y & 255, (x >> 8) * 16 + (y >> 8));
    }
    const int turns = GetParam();
    const QImage ours = HugePages::rotated(picture, turns);
    const QImage qts = picture.transformed(QTransform().rotate(90 * turns));
    ASSERT_FALSE(ours.isNull());
    EXPECT_EQ(ours.format(), qts.format());
    EXPECT_TRUE(ours == qts) << turns << " quarter turns";
}

INSTANTIATE_TEST_SUITE_P(Turns, HugePagesTurnTest, ::testing::Values(1, 2, 3));

TEST(HugePagesTest, SmallOrNot32BitImagesAreLeftToQt)
{
    EXPECT_TRUE(HugePages::rotated(QImage(64, 48, QImage::Format_RGB32), 1).isNull());
    EXPECT_TRUE(HugePages::rotated(QImage(4000, 3000, QImage::Format_RGB888), 1).isNull());
}

} // namespace
} // namespace lumaro::platform
