// SPDX-License-Identifier: GPL-3.0-or-later
// Fast listing of one folder's direct entries, as the desktop shows them (no dot-names, none named in .hidden).
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace lumaro::platform {

struct DirectoryEntry
{
    enum class Kind { file, directory, other };

    QByteArray nativeName; // the name's bytes as on disk: byte order of UTF-8 is code-point order
    Kind kind = Kind::other;

    QString name() const;
};

// Reads the folder with readdir, using the entry type the file system reports and asking stat only when it
// reports none or the entry is a link (links count as what they point to). Thread-safe, blocking.
class DirectoryLister
{
public:
    // nullopt when the folder cannot be read; `error` then holds the system's reason.
    static std::optional<std::vector<DirectoryEntry>> listVisible(const QString& folder, QString* error = nullptr);
};

} // namespace lumaro::platform
