// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/picture/HugePages.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>

namespace lumaro::platform {

namespace {

constexpr qsizetype hugePage = qsizetype(2) << 20;
// Below two huge pages the rounding up would waste too large a share.
constexpr qsizetype smallestHuge = 2 * hugePage;

void release(void* memory)
{
    std::free(memory);
}

char* allocate(qsizetype bytes)
{
    if (bytes < smallestHuge)
        return static_cast<char*>(std::malloc(size_t(std::max<qsizetype>(bytes, 1))));
    const qsizetype rounded = (bytes + hugePage - 1) / hugePage * hugePage;
    void* memory = nullptr;
    if (posix_memalign(&memory, size_t(hugePage), size_t(rounded)) != 0)
        return nullptr;
    madvise(memory, size_t(rounded), MADV_HUGEPAGE); // only advice: without it the memory works as well
    return static_cast<char*>(memory);
}

// Copies a tile at a time: the writes of a quarter turn go down a column, and a 64×64 tile of 32-bit pixels
// stays in the first-level cache while its column is filled.
template <int quarterTurns> void turn(const QImage& from, QImage& to)
{
    constexpr int tile = 64;
    const int w = from.width();
    const int h = from.height();
    uchar* const target = to.bits();
    const qsizetype targetLine = to.bytesPerLine();
    const auto row = [&](int y) { return reinterpret_cast<quint32*>(target + y * targetLine); };
    for (int y0 = 0; y0 < h; y0 += tile) {
        const int y1 = std::min(h, y0 + tile);
        for (int x0 = 0; x0 < w; x0 += tile) {
            const int x1 = std::min(w, x0 + tile);
            for (int y = y0; y < y1; ++y) {
                const auto* line = reinterpret_cast<const quint32*>(from.constScanLine(y));
                for (int x = x0; x < x1; ++x) {
                    if constexpr (quarterTurns == 1)
                        row(x)[h - 1 - y] = line[x];
                    else if constexpr (quarterTurns == 2)
                        row(h - 1 - y)[w - 1 - x] = line[x];
                    else
                        row(w - 1 - x)[y] = line[x];
                }
            }
        }
    }
}

} // namespace

QImage HugePages::image(QSize size, QImage::Format format)
{
    const int depth = QImage::toPixelFormat(format).bitsPerPixel();
    const qsizetype bytesPerLine = (qsizetype(size.width()) * depth + 31) / 32 * 4; // 32-bit aligned lines
    const qsizetype bytes = bytesPerLine * size.height();
    if (size.isEmpty() || bytes < smallestHuge)
        return QImage(size, format);
    char* memory = allocate(bytes);
    if (!memory)
        return QImage(size, format); // null too when there is truly no memory: the caller says so
    return QImage(reinterpret_cast<uchar*>(memory), size.width(), size.height(), bytesPerLine, format,
                  release, memory);
}

HugePages::Block HugePages::block(qsizetype bytes)
{
    return Block(allocate(bytes));
}

QImage HugePages::rotated(const QImage& source, int quarterTurns)
{
    quarterTurns = ((quarterTurns % 4) + 4) % 4;
    if (source.depth() != 32 || quarterTurns == 0 || source.sizeInBytes() < smallestHuge)
        return {}; // Qt's own turn is as quick for what fits in ordinary pages
    const QSize size = quarterTurns == 2 ? source.size() : source.size().transposed();
    QImage turned = HugePages::image(size, source.format());
    if (turned.isNull())
        return {};
    switch (quarterTurns) {
    case 1:
        turn<1>(source, turned);
        break;
    case 2:
        turn<2>(source, turned);
        break;
    default:
        turn<3>(source, turned);
        break;
    }
    return turned;
}

} // namespace lumaro::platform
