// SPDX-License-Identifier: GPL-3.0-or-later
// Recognises a mounted memory card's camera family by the folders its camera writes, and counts what is on
// it.
#pragma once

#include "cards/CameraType.h"
#include "cards/DigitalCardStats.h"

#include <QString>

#include <optional>

namespace lumaro::cards {

struct CardRecognition
{
    CameraType cameraType = CameraType::unknown;
    QString mountPath;
    QString matchInformation; // why the card was recognised, in the user's words
};

// The rules are tried in order and the first that holds decides: Canon R ("DCIM/CANONMSC/M3100.CTG" with the
// "MISC", "DCIM" and "DCIM/CANONMSC" folders), then Canon IXUS (the "DCIM/131CANON" folder). The volume name
// "CANON_DC" only corroborates an IXUS card; alone it recognises nothing. Blocking (it reads the card); any
// thread.
class CardReco
{
public:
    static std::optional<CardRecognition> recognize(const QString& mountPath);

    // Counts the card's DCIM folder for `type`: files directly in DCIM and in sub-folders whose names start
    // with three digits (100CANON, 101_0612); deeper levels and other sub-folders (CANONMSC) are not visited.
    // For a recognised family the camera make and model are read from the EXIF of the first JPG found.
    static DigitalCardStats statistics(const QString& mountPath, CameraType type);

    // The first JPG file on the card's DCIM camera folders, for reading the camera's EXIF; empty when none.
    static QString firstPicture(const QString& mountPath);
    // The camera that took the card's first picture, "Make Model" from its EXIF (logged), for any card,
    // recognised or not; empty when there is no picture or its EXIF lacks them.
    static QString cameraMakeModel(const QString& mountPath);
};

} // namespace lumaro::cards
