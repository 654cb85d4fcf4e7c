// SPDX-License-Identifier: GPL-3.0-or-later
// One folder's pictures and child folders read in one pass, without a log line: for callers that list many
// folders at once (folder cards, the folder map).
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::browse {

// Pictures by name in browsing order, child folders as full paths in the same order, hidden entries left out
// (the rules of FileSystemService). Thread-safe, blocking.
struct FolderContents
{
    QStringList pictures;
    QStringList subfolders;
    qsizetype entryCount = 0; // every visible entry

    // nullopt with `error` set when the folder cannot be read.
    static std::optional<FolderContents> read(const QString& folder, QString* error = nullptr);
};

} // namespace lumaro::browse
