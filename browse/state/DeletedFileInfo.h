// SPDX-License-Identifier: GPL-3.0-or-later
// The record of one deleted picture, kept so that restore can put it back where it was.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::browse {

struct DeletedFileInfo
{
    QString fileName;
    int originalIndex = 0;
    QString folderPath;
    std::optional<QByteArray> folderBookmarkData;
    QDateTime deletedAt;
    std::optional<QString> trashFileURL; // the path of the file inside the Trash
    QStringList originalTags;
    // Its index in the folder's whole list when a filter showed only part of it (originalIndex is then its
    // place among the pictures shown); absent: the same as originalIndex.
    std::optional<int> folderIndex;

    // Identity is the name and the place it had: two deletes of the same name from the same index are
    // the same record for restore's purposes, whatever the Trash or the clock says.
    friend bool operator==(const DeletedFileInfo& a, const DeletedFileInfo& b)
    {
        return a.fileName == b.fileName && a.originalIndex == b.originalIndex;
    }
};

} // namespace lumaro::browse
