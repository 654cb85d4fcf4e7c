// SPDX-License-Identifier: GPL-3.0-or-later
// Picture files built byte by byte for the cases encoders never produce: damaged headers, extreme shapes,
// several frames. Each returns the file's bytes; write them with TempFolder::write.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QSize>

namespace lumaro::testing {

// 82 bytes: a CR2 header whose first IFD lists itself as the next IFD, with JPEG-preview offsets and lengths
// near 0xFFFFFF00 (their sum wraps around 32 bits). exiv2 0.27 throws std::overflow_error on it.
QByteArray selfReferencingCr2();

// A real baseline JPEG of `size` in one `color`, encoded by Qt.
QByteArray jpegOfSize(QSize size, QColor color = Qt::darkCyan);

// A small real JPEG whose frame header claims `claimed` as its size; the scan data is that of a tiny picture.
QByteArray jpegClaimingSize(QSize claimed);

// Still pictures with `frames` frames of `size` (a different grey each): a multi-page uncompressed TIFF, an
// animated PNG (acTL, fcTL, fdAT), an animated WebP (VP8X, ANIM, ANMF around Qt-encoded frames).
QByteArray multiPageTiff(int frames, QSize size = {16, 12});
QByteArray animatedPng(int frames, QSize size = {16, 12});
QByteArray animatedWebp(int frames, QSize size = {16, 12});

} // namespace lumaro::testing
