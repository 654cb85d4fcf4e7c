// SPDX-License-Identifier: GPL-3.0-or-later
// What a picture file really is, from its first bytes rather than its name, and whether it holds more than
// one frame.
#pragma once

#include <QByteArray>
#include <QString>

namespace lumaro::platform {

enum class PictureKind
{
    unknown,
    jpeg,
    png,
    tiff,
    cr2,
    webp,
    gif,
    bmp,
    heif
};

// Thread-safe, blocking (reads the head of the file). A camera's JPEG renamed to .png is a JPEG here.
class PictureSignature
{
public:
    static constexpr qsizetype kHeadBytes = 64;

    static PictureKind kindOf(const QByteArray& head);
    static PictureKind kindOfFile(const QString& path);

    // How many frames the file holds: the pages of a TIFF, the frames of an animated PNG (its acTL chunk) or
    // animated WebP (its ANIM flag, then its ANMF chunks); 1 for any other picture, 0 when the file cannot be
    // read.
    static int frameCount(const QString& path, PictureKind kind);
};

} // namespace lumaro::platform
