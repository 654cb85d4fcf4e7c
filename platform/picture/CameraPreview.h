// SPDX-License-Identifier: GPL-3.0-or-later
// A camera JPEG's own large preview (listed in its MPF block) decoded in place of the picture, when it is big
// enough: a 1620×1080 preview decodes about ten times faster than the 6000×4000 picture it shows.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QImage>

#include <optional>

namespace lumaro::platform {

// Thread-safe (one file per call), blocking.
class CameraPreview
{
public:
    // The smallest preview in `file` whose long side reaches `maxSide` and whose shape is the picture's own
    // (some cameras letterbox theirs to 16:9), decoded to a long side of at most `maxSide`. `head` is the
    // start of the file up to its first scan. nullopt when there is none, maxSide is 0 (full size), or it
    // does not decode: the caller then decodes the picture itself. Orientation is the caller's: the preview
    // is stored as the picture is.
    static std::optional<QImage> decode(QFile& file, const QByteArray& head, int maxSide);
};

} // namespace lumaro::platform
