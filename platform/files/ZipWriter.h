// SPDX-License-Identifier: GPL-3.0-or-later
// Writes a zip archive of files, each under the name it is given, with its modification time.
#pragma once

#include <QList>
#include <QPair>
#include <QString>

#include <optional>

namespace lumaro::platform {

// libarchive writes the archive into a hidden temporary file beside `zipPath`, which is renamed into place
// only when every entry is in and never over an existing file: a failure or a taken name leaves nothing
// behind. Pictures are stored, not deflated (JPEG and RAW do not shrink). Thread-safe, blocking.
class ZipWriter
{
public:
    // `entries`: source path → name inside the archive. nullopt on success, else why not.
    static std::optional<QString> write(const QString& zipPath,
                                        const QList<QPair<QString, QString>>& entries);
};

} // namespace lumaro::platform
