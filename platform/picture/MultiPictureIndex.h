// SPDX-License-Identifier: GPL-3.0-or-later
// The other pictures a camera JPEG carries after its own, listed in its APP2 "MPF" block (CIPA DC-007
// Multi-Picture Format). Most cameras keep a large preview there (1620×1080 beside 6000×4000, say), which a
// view can decode instead of the whole picture.
#pragma once

#include <QByteArray>
#include <QList>

namespace lumaro::platform {

struct EmbeddedImage
{
    qint64 offset = 0; // from the start of the file
    qint64 size = 0;
};

// Pure parsing, thread-safe.
class MultiPictureIndex
{
public:
    // The images after the first one (the picture itself) that the MPF block in `head` lists, where `head` is
    // the start of a JPEG file of `fileSize` bytes, at least up to its first scan. Empty when there is no MPF
    // block or it does not parse; an entry that reaches past the end of the file, or back into the picture
    // itself, is left out.
    static QList<EmbeddedImage> read(const QByteArray& head, qint64 fileSize);
};

} // namespace lumaro::platform
