// SPDX-License-Identifier: GPL-3.0-or-later
// The straight edges where a window's flat areas meet, which paper and camera pictures do not have; and the
// texture off a plain backdrop, which tells a photo cut out onto it from a drawing.
#include "vision/ScreenCaptureEvidence.h"

#include <QImage>
#include <QPainter>
#include <QRandomGenerator>

#include <gtest/gtest.h>

using namespace lumaro::vision;

namespace {

QImage page()
{
    QImage image(640, 300, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(Qt::black);
    for (int line = 0; line < 6; ++line)
        painter.drawText(40, 40 + line * 20, QStringLiteral("The train left the valley after noon"));
    return image;
}

struct Case
{
    const char* name;
    QImage image;
    bool framed;
};

void PrintTo(const Case& c, std::ostream* os)
{
    *os << c.name;
}

std::vector<Case> cases()
{
    std::vector<Case> all;
    all.push_back({"aPageOfTextHasNoFrame", page(), false});
    {
        QImage box = page(); // a message window: its text in a bordered box
        QPainter painter(&box);
        painter.setPen(QColor(0x60, 0x60, 0x60));
        painter.drawRect(10, 10, 600, 200);
        all.push_back({"aTextBoxIsFramed", box, true});
    }
    {
        QImage ruled = page(); // lines across alone, as on ruled paper, are no panel
        QPainter painter(&ruled);
        painter.setPen(QColor(0x90, 0xb0, 0xe0));
        for (int y = 60; y < 300; y += 40)
            painter.drawLine(0, y, 639, y);
        all.push_back({"ruledLinesAloneAreNoFrame", ruled, false});
    }
    {
        QImage noisy = page(); // a photographed box: the camera's noise breaks every edge
        QPainter painter(&noisy);
        painter.setPen(QColor(0x60, 0x60, 0x60));
        painter.drawRect(10, 10, 600, 200);
        painter.end();
        QRandomGenerator random(7);
        for (int y = 0; y < noisy.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(noisy.scanLine(y));
            for (int x = 0; x < noisy.width(); ++x) {
                const int shift = int(random.bounded(5)) - 2;
                const int grey = std::clamp(qGray(line[x]) + shift, 0, 255);
                line[x] = qRgb(grey, grey, grey);
            }
        }
        all.push_back({"cameraNoiseLeavesNoFrame", noisy, false});
    }
    return all;
}

class FramedPanels : public ::testing::TestWithParam<Case>
{
};

TEST_P(FramedPanels, AreFoundWhereFlatAreasMeetAlongStraightEdges)
{
    EXPECT_EQ(ScreenCaptureEvidence::hasFramedPanel(GetParam().image), GetParam().framed);
}

INSTANTIATE_TEST_SUITE_P(Table, FramedPanels, ::testing::ValuesIn(cases()),
                         [](const auto& info) { return std::string(info.param.name); });

// A figure on a white backdrop: a photo's texture (a plush toy's fur: every pixel its own shade), or a
// drawing's flat fill inside its outline, saved as JPEG would leave it (a shade or two of noise).
QImage figureOnBackdrop(int spread)
{
    QImage image(320, 240, QImage::Format_RGB32);
    image.fill(Qt::white);
    QRandomGenerator random(11);
    for (int y = 40; y < 200; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 60; x < 260; ++x) {
            const int shift = int(random.bounded(spread + 1)) - spread / 2;
            line[x] = qRgb(150 + shift, 100 + shift, 60 + shift);
        }
    }
    QPainter painter(&image);
    painter.setPen(QPen(Qt::black, 3));
    painter.drawRect(60, 40, 200, 160);
    return image;
}

TEST(OffBackdropTexture, IsNearlyAllOfACutOutPhotoAndLittleOfADrawnFill)
{
    const FlatAreas photo = ScreenCaptureEvidence::flatAreas(figureOnBackdrop(60));
    const FlatAreas drawing = ScreenCaptureEvidence::flatAreas(figureOnBackdrop(2));
    EXPECT_EQ(photo.colours, 1);
    EXPECT_GE(photo.offBackdropTexture, 0.97);
    EXPECT_EQ(drawing.colours, 1);
    EXPECT_LT(drawing.offBackdropTexture, 0.5);
    EXPECT_EQ(photo.backdropGrey, 255);
}

} // namespace
