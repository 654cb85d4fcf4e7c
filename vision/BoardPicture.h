// SPDX-License-Identifier: GPL-3.0-or-later
// What a board index sheet prints under one picture, read from the file, its tags and its XMP.
#pragma once

#include "platform/metadata/PictureMarks.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

namespace lumaro::platform {
class FileTagStore;
}

namespace lumaro::vision {

struct BoardPicture
{
    QString fileName;
    QStringList
        colours; // of red, yellow, orange, green, blue, purple, in that order: file tags and XMP labels
    int stars = 0;
    platform::PickFlag flag = platform::PickFlag::none;
    QString mark;    // the category mark of the folder's vision index; empty when it was never analysed
    QDateTime taken; // the camera's clock, else the file's modification time; invalid when neither is known
    QString error;   // why its XMP could not be read (the rest is still filled)

    // Blocking; any thread. Reads headers only, never pixels. `marks` maps file names to category marks.
    static BoardPicture read(const QString& folder, const QString& fileName, platform::FileTagStore& tags,
                             const QHash<QString, QString>& marks);
    static const QStringList& colourOrder();
};

} // namespace lumaro::vision
