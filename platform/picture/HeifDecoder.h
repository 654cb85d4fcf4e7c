// SPDX-License-Identifier: GPL-3.0-or-later
// HEIC/HEIF through libheif; grids take the file's embedded thumbnail when it is big enough.
#pragma once

#include <QImage>
#include <QString>

#include <optional>

namespace lumaro::platform {

// Thread-safe, blocking. libheif turns the picture upright itself (its irot/imir properties), so no EXIF
// orientation is applied on top. `usedThumbnail` tells which image was decoded.
class HeifDecoder
{
public:
    static std::optional<QImage> decode(const QString& path, int maxSide, bool allowThumbnail,
                                        bool* usedThumbnail = nullptr, QString* error = nullptr);
};

} // namespace lumaro::platform
