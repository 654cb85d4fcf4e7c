// SPDX-License-Identifier: GPL-3.0-or-later
// The plain files directly inside one folder, dot-names included, each with its size, read in one pass.
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

// For tools that must see every file of a folder, hidden ones too (the pairing clean): sub-folders are skipped,
// links count as what they point to. Names come back sorted by their bytes. Thread-safe, blocking.
class FolderFiles
{
public:
    // nullopt when the folder cannot be read; `error` then holds the system's reason.
    static std::optional<std::vector<FolderFile>> list(const QString& folder, QString* error = nullptr);
    // One file's size; nullopt with `error` set when it cannot be read.
    static std::optional<qint64> sizeOf(const QString& path, QString* error = nullptr);
};

} // namespace lumaro::platform
