// SPDX-License-Identifier: GPL-3.0-or-later
// Memory cards as cameras lay them out, built in temporary folders, and JPEGs that carry a camera's EXIF.
#pragma once

#include "tests/support/TempFolder.h"

#include <QByteArray>
#include <QString>

namespace lumaro::testing {

// A real JPEG whose EXIF names `make` and `model` (IFD0 tags 0x010F and 0x0110).
QByteArray jpegWithCamera(const QByteArray& make, const QByteArray& model);

// A real JPEG without EXIF.
QByteArray plainJpeg();

// What a Canon R body writes when it formats a card: DCIM/CANONMSC/M3100.CTG, MISC, DCIM/100CANON.
void buildCanonRCard(TempFolder& card, const QString& root);
// What a Canon IXUS writes: DCIM/131CANON.
void buildCanonIxusCard(TempFolder& card, const QString& root);

} // namespace lumaro::testing
