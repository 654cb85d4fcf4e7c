// SPDX-License-Identifier: GPL-3.0-or-later
// What a folder card shows of one child folder: its cover, how many pictures, when they were taken, their
// colours.
#pragma once

#include <QDate>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

namespace lumaro::browse {

// Times are milliseconds since 1970 UTC: a picture's EXIF capture time read as local time, else its
// modification time; both 0 for a folder without pictures. `names` are the pictures in browsing order, so
// the cover can follow the favourites without reading the folder again.
struct FolderCard
{
    QString path;
    int pictureCount = 0;
    qint64 firstTaken = 0;
    qint64 lastTaken = 0;
    QMap<QString, int> colourCounts; // "red" → pictures carrying it
    QMap<QDate, int> picturesByDay;  // the local day each picture was taken → how many (the home page's shoots)
    QStringList names;
    bool readable = true; // false: the folder could not be listed (the card says so)

    // The cover: the first favourite in browsing order, else the first picture; empty without pictures.
    QString coverPath(const std::function<bool(const QString& path)>& isFavourite = {}) const;

    bool operator==(const FolderCard&) const = default;
};

} // namespace lumaro::browse
