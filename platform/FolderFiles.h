// SPDX-License-Identifier: GPL-3.0-or-later
// The entries directly inside one folder, dot-names included, read in one pass by their bytes: the plain files
// with their sizes, or every entry as it is.
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace lumaro::platform {

struct FolderFile
{
    QString name;
    qint64 size = 0;
    // False when the size could not be read (the file vanished or cannot be stat'ed); `size` is then 0.
    bool sizeKnown = true;
    QString sizeError;
};

// One entry of a folder as lstat sees it: a link is a link, whatever it leads to.
struct FolderEntry
{
    enum class Kind
    {
        file,
        folder,
        link,
        other // a device, a socket, or a name gone before it could be stat'ed
    };
    QString name; // by FileNameCodec, so the name reaches the entry again whatever its encoding
    Kind kind = Kind::other;
    qint64 size = 0;
    qint64 modifiedMs = 0; // since 1970 UTC
};

// For tools that must see every file of a folder, hidden ones too (the pairing clean): sub-folders are skipped,
// links count as what they point to. Names come back sorted by their bytes. Thread-safe, blocking.
class FolderFiles
{
public:
    // nullopt when the folder cannot be read; `error` then holds the system's reason.
    static std::optional<std::vector<FolderFile>> list(const QString& folder, QString* error = nullptr);
    // Every entry, dot-names and sub-folders included, in the folder's own order; nullopt when the folder
    // cannot be read, `error` then holding the system's reason. For walks that must not pass a file by (a card
    // being imported).
    static std::optional<std::vector<FolderEntry>> entries(const QString& folder, QString* error = nullptr);
    // One file's size; nullopt with `error` set when it cannot be read.
    static std::optional<qint64> sizeOf(const QString& path, QString* error = nullptr);
};

} // namespace lumaro::platform
