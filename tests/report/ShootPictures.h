// SPDX-License-Identifier: GPL-3.0-or-later
// Small real pictures with the EXIF a camera would write, for the report tests.
#pragma once

#include "tests/support/TempFolder.h"

#include <QMap>
#include <QSize>
#include <QString>

namespace lumaro::testing {

using ExifTags = QMap<QString, QString>; // "Exif.Photo.DateTimeOriginal" → "2024:05:01 10:00:00"

// Writes `relative` as a real picture of `size` with `tags` set through exiv2. A name ending in a RAW suffix
// (.NEF, .CR2, …) gets a TIFF-structured file, as those RAW formats are; the EXIF is real either way.
QString writeShot(TempFolder& folder, const QString& relative, const ExifTags& tags, QSize size = {60, 40});

// The tags of one camera's shot: make, model, serial, time with sub-seconds, and the running image number.
ExifTags cameraShot(const QString& time, const QString& subSeconds = {}, int imageNumber = 0);

} // namespace lumaro::testing
