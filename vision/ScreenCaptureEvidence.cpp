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
// A block whose channels spread wider than this is textured: a drawing's fill, even saved as JPEG, stays
// within it; a photo's fur, grass or skin does not.
constexpr int kTextureSpread = 8;

// The widest spread of one channel over a block.
int channelSpread(const QImage& rgb, int bx, int by)
{
    int low[3] = {255, 255, 255}, high[3] = {0, 0, 0};
    for (int y = 0; y < kBlock; ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(by * kBlock + y)) + bx * kBlock;
        for (int x = 0; x < kBlock; ++x) {
            const int channels[3] = {qRed(line[x]), qGreen(line[x]), qBlue(line[x])};
            for (int c = 0; c < 3; ++c) {
                low[c] = std::min(low[c], channels[c]);
                high[c] = std::max(high[c], channels[c]);
            }
        }
    }
    return std::max({high[0] - low[0], high[1] - low[1], high[2] - low[2]});
}

// How many of a block's pixels have the backdrop's colour.
int backdropPixels(const QImage& rgb, int bx, int by, QRgb backdrop)
{
    int count = 0;
    for (int y = 0; y < kBlock; ++y) {
        const QRgb* line = reinterpret_cast<const QRgb*>(rgb.constScanLine(by * kBlock + y)) + bx * kBlock;
        for (int x = 0; x < kBlock; ++x)
            count += (line[x] & 0xffffff) == backdrop;
    }
    return count;
}

// Of the blocks at most half on the backdrop, the share that is textured (see FlatAreas).
double offBackdropTexture(const QImage& rgb, QRgb backdrop, int columns, int rows)
{
    qint64 off = 0, textured = 0;
    for (int by = 0; by < rows; ++by) {
        for (int bx = 0; bx < columns; ++bx) {
            if (backdropPixels(rgb, bx, by, backdrop) * 2 >= kBlock * kBlock)
                continue;
            ++off;
            textured += channelSpread(rgb, bx, by) > kTextureSpread;
        }
    }
    return off > 0 ? double(textured) / double(off) : 0.0;
}

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
    QRgb backdrop = 0;
    qint64 backdropBlocks = 0;
    for (auto colour = blocksByColour.cbegin(); colour != blocksByColour.cend(); ++colour) {
        if (double(colour.value()) / blocks >= kColourShare)
            ++areas.colours;
        if (colour.value() > backdropBlocks ||
            (colour.value() == backdropBlocks && colour.key() < backdrop)) {
            backdrop = colour.key();
            backdropBlocks = colour.value();
        }
    }
    if (backdropBlocks > 0) {
        areas.offBackdropTexture = offBackdropTexture(rgb, backdrop, columns, rows);
        areas.backdropGrey = qGray(backdrop);
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
    evidence.offBackdropTexture = flat.offBackdropTexture;
    evidence.backdropGrey = flat.backdropGrey;
    evidence.framedPanel = hasFramedPanel(decoded);
    return evidence;
}

} // namespace lumaro::vision
