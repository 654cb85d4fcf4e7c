// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ToneHistogram.h"

namespace lumaro::report {

ToneHistogram ToneHistogram::of(const QImage& image)
{
    ToneHistogram histogram;
    if (image.isNull())
        return histogram;
    // One known layout to walk; ARGB32 (not premultiplied) keeps the colour values of translucent pixels.
    const QImage pixels = image.format() == QImage::Format_ARGB32 || image.format() == QImage::Format_RGB32
                              ? image
                              : image.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < pixels.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(pixels.constScanLine(y));
        for (int x = 0; x < pixels.width(); ++x) {
            const QRgb pixel = row[x];
            if (qAlpha(pixel) == 0)
                continue;
            const int r = qRed(pixel);
            const int g = qGreen(pixel);
            const int b = qBlue(pixel);
            ++histogram.red[r];
            ++histogram.green[g];
            ++histogram.blue[b];
            // Integer Rec. 709 weights (sum 65536), rounded.
            ++histogram.luminance[(13933 * r + 46871 * g + 4732 * b + 32768) >> 16];
            histogram.clippedHighlights += (r == 255 || g == 255 || b == 255) ? 1 : 0;
            histogram.clippedShadows += (r == 0 && g == 0 && b == 0) ? 1 : 0;
        }
    }
    for (const quint32 count : histogram.luminance)
        histogram.pixels += count;
    return histogram;
}

} // namespace lumaro::report
