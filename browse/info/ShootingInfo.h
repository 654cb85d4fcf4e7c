// SPDX-License-Identifier: GPL-3.0-or-later
// What a photographer checks on a picture: camera, lens, exposure, time, size, tags and rating, as lines.
#pragma once

#include "platform/metadata/CaptureMetadata.h"
#include "platform/metadata/PictureMarks.h"

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

namespace lumaro::platform {
class FileTagStore;
}

namespace lumaro::browse {

// Read once per file (exiv2 headers, the file's size and tags, its XMP marks); blocking, any thread: the
// window reads it on the pool, the command line directly.
struct ShootingInfo
{
    struct Fact
    {
        QString key;   // "camera", "lens", … (the JSON key)
        QString label; // "相机", "镜头", … (the overlay's)
        QString value; // as printed: "f/2.8", "1/250 s", "+0.7 EV", …
    };

    QString path;
    bool readable = false; // false: not a file, or not a picture exiv2 can read (size and tags still given)
    QString error;
    platform::CaptureMetadata metadata;
    qint64 fileSize = -1;
    QStringList tags;
    platform::PictureMarks marks;

    static ShootingInfo read(const QString& path, const platform::FileTagStore& tags);

    // The facts the file has, in the overlay's order; a fact the file does not carry is left out.
    QList<Fact> facts() const;
    // Every fact by key, numbers as numbers.
    QJsonObject toJson() const;
};

// "1/250 s", "0.8 s", "30 s".
QString shutterText(double seconds);

} // namespace lumaro::browse
