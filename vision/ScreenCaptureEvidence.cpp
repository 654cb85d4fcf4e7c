// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/ScreenCaptureEvidence.h"

#include "platform/ImageMetadata.h"

#include <QHash>

#include <algorithm>
#include <vector>

namespace lumaro::vision {

namespace {

constexpr int kBlock = 8;
constexpr double kColourShare =
    0.01; // a flat colour counts as a region of its own from this part of the picture

} // namespace

FlatAreas ScreenCaptureEvidence::flatAreas(const QImage& image)
{
    FlatAreas areas;
    if (image.width() < kBlock || image.height() < kBlock)
        return areas;
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    const int columns = rgb.width() / kBlock, rows = rgb.height() / kBlock;
    qint64 flat = 0;
    QHash<QRgb, qint64> blocksByColour;
    for (int by = 0; by < rows; ++by) {
        for (int bx = 0; bx < columns; ++bx) {
            const QRgb first =
                reinterpret_cast<const QRgb*>(rgb.constScanLine(by * kBlock))[bx * kBlock] & 0xffffff;
            bool same = true;
            for (int y = 0; y < kBlock && same; ++y) {
                const QRgb* line =
                    reinterpret_cast<const QRgb*>(rgb.constScanLine(by * kBlock + y)) + bx * kBlock;
                for (int x = 0; x < kBlock; ++x) {
                    if ((line[x] & 0xffffff) != first) {
                        same = false;
                        break;
                    }
                }
            }
            if (same) {
                ++flat;
                ++blocksByColour[first];
            }
        }
    }
    const double blocks = double(columns) * rows;
    areas.share = double(flat) / blocks;
    for (const qint64 count : std::as_const(blocksByColour)) {
        if (double(count) / blocks >= kColourShare)
            ++areas.colours;
    }
    return areas;
}

bool ScreenCaptureEvidence::hasFramedPanel(const QImage& image)
{
    if (image.width() < 2 || image.height() < 2)
        return false;
    const QImage rgb = image.convertToFormat(QImage::Format_RGB32);
    const int width = rgb.width(), height = rgb.height();
    const int across = width / 2, down = height / 3;
    // Per column, how many rows in a row a one-coloured line has run down beside a line of another colour.
    std::vector<int> downRun(size_t(width - 1), 0);
    bool acrossFound = false, downFound = false;
    for (int y = 0; y + 1 < height && !(acrossFound && downFound); ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(y));
        const QRgb* next = reinterpret_cast<const QRgb*>(rgb.constScanLine(y + 1));
        int acrossRun = 0;
        for (int x = 0; x + 1 < width; ++x) {
            const QRgb here = line[x] & 0xffffff, right = line[x + 1] & 0xffffff;
            const QRgb below = next[x] & 0xffffff, belowRight = next[x + 1] & 0xffffff;
            acrossRun = (here == right && below == belowRight && here != below) ? acrossRun + 1 : 0;
            acrossFound = acrossFound || acrossRun >= across;
            int& run = downRun[size_t(x)];
            run = (here == below && right == belowRight && here != right) ? run + 1 : 0;
            downFound = downFound || run >= down;
        }
    }
    return acrossFound && downFound;
}

bool ScreenCaptureEvidence::isScreenSize(const QSize& size)
{
    static const QSize sizes[] = {
        {1024, 768},  {1280, 720},  {1280, 800},  {1280, 1024}, {1366, 768},  {1440, 900},  {1536, 864},
        {1600, 900},  {1680, 1050}, {1920, 1080}, {1920, 1200}, {2048, 1536}, {2560, 1080}, {2560, 1440},
        {2560, 1600}, {2732, 2048}, {2880, 1800}, {3024, 1964}, {3440, 1440}, {3456, 2234}, {3840, 2160},
        {5120, 2880}, {750, 1334},  {828, 1792},  {1080, 1920}, {1080, 2340}, {1080, 2400}, {1125, 2436},
        {1170, 2532}, {1179, 2556}, {1242, 2208}, {1242, 2688}, {1284, 2778}, {1290, 2796}, {1440, 3200},
        {1440, 3120}, {1536, 2048}, {1620, 2160}, {1668, 2388}, {2048, 2732},
    };
    return std::any_of(std::begin(sizes), std::end(sizes),
                       [&](const QSize& s) { return s == size || s.transposed() == size; });
}

ScreenEvidence ScreenCaptureEvidence::of(const QString& path, const QImage& decoded, const QSize& pixelSize)
{
    ScreenEvidence evidence;
    const platform::ImageMetadata metadata = platform::ImageMetadata::read(path);
    evidence.cameraMetadata = metadata.status == platform::ImageMetadata::Status::ok &&
                              (!metadata.make.isEmpty() || !metadata.model.isEmpty());
    evidence.screenSize = isScreenSize(pixelSize);
    const FlatAreas flat = flatAreas(decoded);
    evidence.flatShare = flat.share;
    evidence.flatColours = flat.colours;
    evidence.framedPanel = hasFramedPanel(decoded);
    return evidence;
}

} // namespace lumaro::vision
