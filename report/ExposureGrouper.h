// SPDX-License-Identifier: GPL-3.0-or-later
// Groups the files of a shoot into exposures: the JPEG, RAW and HEIF of one shot are one exposure.
#pragma once

#include "report/ShotFile.h"

#include <QList>

namespace lumaro::report {

struct Exposure
{
    QList<int> files;                // indices into the files given, in name order
    platform::CaptureMetadata facts; // the JPEG's header first, gaps filled from the other files
    QString camera;                  // "Make Model", or empty
};

// Pure. Files of one exposure come from the same camera (make, model, serial) at the same capture time (to
// the second), differ in kind, and agree on the sub-seconds and on the camera's running number wherever both
// files carry them; they may lie in different folders (JPG/ and RAW/). Files of one kind at the same instant
// are separate shots, paired with the other kinds in name order. Files without a capture time pair by name
// stem.
class ExposureGrouper
{
public:
    static QList<Exposure> group(const QList<ShotFile>& files);
};

QString cameraName(const platform::CaptureMetadata& facts);

} // namespace lumaro::report
