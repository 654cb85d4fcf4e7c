// SPDX-License-Identifier: GPL-3.0-or-later
// JPEG bytes as a camera leaves them, for the picture-reading tests: EXIF orientation and an EXIF thumbnail
// written with exiv2, and a colour check loose enough for JPEG's loss.
#pragma once

#include <QByteArray>
#include <QColor>

namespace lumaro::testing {

// `jpeg` with its EXIF orientation set, and `thumbnail` (JPEG bytes) as its EXIF thumbnail when given.
QByteArray withExif(const QByteArray& jpeg, int orientation, const QByteArray& thumbnail = {});

// Within 40 per channel.
bool isNear(QColor a, QColor b);

} // namespace lumaro::testing
