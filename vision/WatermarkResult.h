// SPDX-License-Identifier: GPL-3.0-or-later
// What the watermark reader found on one picture.
#pragma once

#include <QString>
#include <QStringList>

namespace lumaro::vision {

struct WatermarkResult
{
    QString fileName;   // the picture's name inside its folder
    QString filePath;   // full path
    QString identifier; // "@name" or an ID's value; empty when none was read
    QString kind;       // "handle" or "id"; empty with no identifier
    QString text;       // the line the identifier came from
    QStringList lines;  // every line read in the corners and along the bottom
    QString error;      // why the picture could not be read; empty when it was

    bool isIdentified() const { return !identifier.isEmpty(); }
};

} // namespace lumaro::vision
