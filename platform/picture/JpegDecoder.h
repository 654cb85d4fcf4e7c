// SPDX-License-Identifier: GPL-3.0-or-later
// libjpeg-turbo behind one call: a JPEG in memory decoded at the smallest DCT scale that still covers the size
// asked for, so a 24-megapixel photo is never expanded to full size for a thumbnail.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

#include <optional>

namespace lumaro::platform {

// Thread-safe (one decompressor per call), blocking.
class JpegDecoder
{
public:
    // The stored size from the header, or nullopt when `data` is not a JPEG.
    static std::optional<QSize> size(const QByteArray& data);
    enum class CutShort { refuse, keepWhatIsThere };

    // Long side at most `maxSide` (0: full size). A fatal decoder error gives nullopt and the reason in `error`;
    // harmless warnings are accepted. A stream that ends before its end marker (a copy cut short) gives nullopt
    // too, unless `cutShort` asks for what is there: the rows that were in the file, grey below them, with the
    // reason still in `error`.
    static std::optional<QImage> decode(const QByteArray& data, int maxSide, QString* error = nullptr,
                                        CutShort cutShort = CutShort::refuse);
};

// Long side at most `maxSide`, smooth; an image already small enough is returned as it is.
QImage fitWithin(const QImage& image, int maxSide);

} // namespace lumaro::platform
