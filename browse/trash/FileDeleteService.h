// SPDX-License-Identifier: GPL-3.0-or-later
// Moves pictures to the Trash and brings them back: the file work behind delete and restore.
#pragma once

#include "browse/state/DeletedFileInfo.h"
#include "platform/TrashRestorer.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumaro::platform {
class Trash;
}

namespace lumaro::browse {

struct TrashOutcome
{
    std::optional<QString> trashFilePath; // where the file went, on success
    QString error;                        // why not, on failure

    bool ok() const { return trashFilePath.has_value(); }
};

// Any thread; every call blocks (the dispatcher runs them on the thread pool). Logs as "FileDeleteService -
// …". Restore is a chain of four ways back, each tried only when the one before failed, and only the end of
// the chain reports failure: (1) the Trash path saved at delete time, renamed back; (2) a search of the
// trashes for the record naming the original path (newest first); (3) for an item on another file system,
// copy then remove, waited for to the end, so that the answer always says what happened on disk; (4) `gio
// trash
// --restore`. Only an item whose record names the file's own original path is ever taken: a same-named item
// trashed from another folder stays where it is. No way ever replaces a file of the same name already in the
// folder: the restore then fails and the item stays in the Trash. A picture's XMP sidecars go to the Trash
// with it and come back with it (never over a sidecar that has appeared meanwhile).
class FileDeleteService
{
public:
    struct Options
    {
        platform::Trash* trash = nullptr; // nullptr: the freedesktop Trash
        platform::RenameFunction rename = platform::systemRenameWithoutReplacing();
        platform::VolumeLookup volumes = platform::systemVolumeLookup();
        bool useGio = true;
    };

    static FileDeleteService& shared();
    explicit FileDeleteService(Options options);
    FileDeleteService();

    TrashOutcome moveToTrash(const QString& fileName, const QString& folderPath,
                             const std::optional<QByteArray>& folderBookmarkData);
    bool restoreFile(const DeletedFileInfo& info);
    // Restores each record in turn; the trashes' records are read at most once for the whole batch.
    QList<bool> restoreFiles(const QList<DeletedFileInfo>& infos);
    // Whether the file of `info` could still come back: the Trash holds an item whose record names it and its
    // name in the folder is free.
    bool canStillRestore(const DeletedFileInfo& info);

private:
    QString resolveFolder(const QString& folderPath, const std::optional<QByteArray>& bookmark);
    bool restore(const DeletedFileInfo& info, platform::TrashRecords& records);
    bool restoreFromSavedPath(const DeletedFileInfo& info, const QString& target, QString* crossDeviceItem);
    bool restoreByLookup(const QString& fileName, const QString& target, platform::TrashRecords& records,
                         QString* crossDeviceItem);
    bool restoreByCopy(const QString& item, const QString& target);
    bool restoreWithGio(const QString& target);
    void trashSidecars(const QStringList& sidecars);
    void restoreSidecars(const QString& picture, platform::TrashRecords& records);

    Options m_options;
    platform::Trash& m_trash;
    platform::TrashRestorer m_restorer;
};

} // namespace lumaro::browse
