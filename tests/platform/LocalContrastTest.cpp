// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/LocalContrast.h"

#include <QPainter>

#include <gtest/gtest.h>

using lumaro::platform::withLocalContrast;

// A faint light stamp on a light wall: the step between them must come out several times stronger; a strong
// edge must not be turned around.
TEST(LocalContrast, AFaintLightStampOnALightGroundStandsOut)
{
    QImage wall(320, 160, QImage::Format_RGB32);
    wall.fill(QColor(215, 215, 215));
    QPainter painter(&wall);
    for (int x = 60; x < 180; x += 12) // the strokes of a line of small letters
        painter.fillRect(QRect(x, 60, 4, 30), QColor(232, 232, 232));
    painter.fillRect(QRect(260, 20, 40, 40), QColor(200, 40, 40));
    painter.end();

    const QImage raised = withLocalContrast(wall);
    ASSERT_EQ(raised.size(), wall.size());
    const int before = qGray(wall.pixel(121, 75)) - qGray(wall.pixel(126, 75));
    const int after = qGray(raised.pixel(121, 75)) - qGray(raised.pixel(126, 75));
    EXPECT_GE(after, 3 * before);
    EXPECT_LT(qGray(raised.pixel(280, 40)), qGray(raised.pixel(250, 40)));
    EXPECT_TRUE(withLocalContrast(QImage()).isNull());
}
