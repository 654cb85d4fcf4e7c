// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes a picture once, scaled down, for on-device analysis.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include <optional>

namespace lumaro::platform {

struct AnalysisImage
{
    QImage image;    // upright; long side about the requested size (a JPEG's may be up to twice it, see .cpp)
    QSize pixelSize; // the picture's own size, upright (EXIF orientation applied)
};

// Thread-safe, blocking. JPEGs are decoded at a reduced DCT scale, so a 24-megapixel photo never exists in
// memory at full size. A picture that cannot be decoded, or a JPEG whose data ends before its end marker
// (a copy cut short), gives nullopt and the reason in `error`.
class AnalysisImageReader
{
public:
    static std::optional<AnalysisImage> read(const QString& path, int maxSide, QString* error = nullptr);
};

} // namespace lumaro::platform
