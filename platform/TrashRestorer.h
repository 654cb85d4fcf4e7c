// SPDX-License-Identifier: GPL-3.0-or-later
// Putting a file back from the freedesktop.org Trash, whoever trashed it: Lumaro, GNOME Files or Dolphin.
#pragma once

#include "platform/TrashDirectories.h"
#include "platform/files/FileMover.h"

#include <QDateTime>
#include <QHash>
#include <QMultiHash>
#include <QSet>
#include <QString>

#include <functional>
#include <optional>

namespace lumaro::platform {

// One item of a trash: the file in files/, its record in info/, and what the record says.
struct TrashEntry
{
    QString trashedPath;
    QString infoPath;
    QString originalPath; // absolute, decoded; empty when the record is missing or unreadable
    QDateTime deletionDate;
};

// The records of the trashes as one batch of restores has read them: each trash's info/ folder is listed at
// most once per batch, so a name that is not there costs no failed open; a record is read only when its name
// may be the file's. Not thread-safe: one per batch, on the batch's thread.
class TrashRecords
{
public:
    // The records of `trashDir` whose Path names `originalPath` (cleaned, absolute), among the items whose
    // name ends in the file's own extension (every trasher keeps it when it numbers a clash: "IMG 7.2.jpg",
    // "IMG 7 (2).jpg"); all of them for a file without one. Read once per trash, extension and batch.
    QList<TrashEntry> naming(const QString& trashDir, const QString& originalPath);
    // Whether `trashDir`'s info/ held a record of that name when the batch first looked.
    bool isListed(const QString& trashDir, const QString& recordName);
    // The trashes that may hold a file of `folder`, looked up once per folder and batch.
    QStringList trashesFor(const QString& folder, const VolumeLookup& lookup);

private:
    const QSet<QString>& recordNames(const QString& trashDir);

    QHash<QString, QSet<QString>> m_names;                    // trash → its records' names
    QHash<QString, QMultiHash<QString, TrashEntry>> m_byPath; // trash and extension → original path → items
    QHash<QString, QStringList> m_trashesByFolder;
};

// Thread-safe, blocking. Nothing here overwrites: a target name that is taken makes the step fail and leaves
// the item in the Trash. Item names read from records are checked: a name with "/" or equal to "." or ".." is
// never used.
class TrashRestorer
{
public:
    explicit TrashRestorer(RenameFunction rename = systemRenameWithoutReplacing(),
                           VolumeLookup lookup = systemVolumeLookup());

    // The record of a trashed file, read from its trash's info/ folder.
    static TrashEntry entryFor(const QString& trashedPath);
    // Reads a .trashinfo; nullopt when it is not one. `trashDir` resolves a per-volume relative Path.
    static std::optional<TrashEntry> readInfo(const QString& infoPath, const QString& trashDir);

    // Renames the trashed file back to `target` and removes its record.
    RenameResult putBack(const QString& trashedPath, const QString& target) const;
    // Every item whose record names `originalPath`, newest first. Only such items ever qualify: an item of
    // the same name trashed from another folder (every card has an IMG_0001.JPG) is never taken. The records
    // named after the file ("IMG_1.jpg", "IMG_1.2.jpg", …) are tried first; only when none of them names the
    // file are the trashes' records read, through `records` (one per batch), or a fresh reading when it is
    // null.
    QList<TrashEntry> findByOriginalPath(const QString& originalPath, TrashRecords* records = nullptr) const;
    // Whether the record of the trashed item at `trashedPath` names `originalPath`.
    static bool isItemOf(const QString& trashedPath, const QString& originalPath);
    // For an item on another file system than `target`: copies it beside the target (never over anything),
    // then removes the trashed original and its record. The copy keeps the file's tags and times.
    bool copyBack(const QString& trashedPath, const QString& target, QString* error) const;

    // Whether the desktop's own restore, `gio trash --restore`, can be run here.
    static bool isGioAvailable();
    // Asks gio to put back the item whose original place is `originalPath` (gio never overwrites either).
    static bool gioRestore(const QString& originalPath, QString* error, int timeoutMs = 10000);

private:
    RenameFunction m_rename;
    VolumeLookup m_lookup;
};

} // namespace lumaro::platform
