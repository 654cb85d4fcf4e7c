// SPDX-License-Identifier: GPL-3.0-or-later
// The tone histogram of a picture: luminance and the red, green and blue channels, with clipped shares.
#pragma once

#include <QImage>

#include <array>

namespace lumaro::report {

// Pure, thread-safe: meant for a pool thread, over the decoded preview. Luminance is Rec. 709
// (0.2126 R + 0.7152 G + 0.0722 B) of the stored 8-bit values. A pixel is clipped in the highlights when any
// of its channels is at 255 (that channel has lost its detail), in the shadows when all three are at 0.
// Transparent pixels are skipped.
struct ToneHistogram
{
    using Bins = std::array<quint32, 256>;
    Bins luminance{};
    Bins red{};
    Bins green{};
    Bins blue{};
    quint64 pixels = 0;
    quint64 clippedShadows = 0;
    quint64 clippedHighlights = 0;

    double shadowPercent() const { return pixels ? 100.0 * double(clippedShadows) / double(pixels) : 0; }
    double highlightPercent() const
    {
        return pixels ? 100.0 * double(clippedHighlights) / double(pixels) : 0;
    }
    bool isEmpty() const { return pixels == 0; }

    static ToneHistogram of(const QImage& image);
};

} // namespace lumaro::report
