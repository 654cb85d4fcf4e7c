// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces a file's bytes the safe way: a complete temporary file beside it, renamed over it.
#pragma once

#include <QByteArray>
#include <QString>

namespace lumaro::platform {

// Thread-safe, blocking. The new file keeps the old one's permission bits and user.* extended attributes
// (colour tags), so a rewritten picture looks to the user like the same file. On failure the original is
// untouched and no temporary file is left.
class FileReplacer
{
public:
    static bool replaceContents(const QString& path, const QByteArray& contents, QString* error);
    // Creates `path` with `contents` (permissions from the umask), never replacing a file that has that
    // name, even one that appears while this writes: then it fails with "File exists".
    static bool createFile(const QString& path, const QByteArray& contents, QString* error);
};

} // namespace lumaro::platform
