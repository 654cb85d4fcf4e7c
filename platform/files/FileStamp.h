// SPDX-License-Identifier: GPL-3.0-or-later
// What changes when a file changes: its size, content time and status time (tags, renames, owner).
#pragma once

#include <QString>

#include <optional>

namespace lumaro::platform {

// The status-change time moves when a file's extended attributes (its colour tags) are written, which the
// modification time does not, so the three together tell whether anything read from the file may have
// changed. Thread-safe, blocking; follows symbolic links like the folder listing does.
struct FileStamp
{
    qint64 size = 0;
    qint64 modifiedNs = 0; // nanoseconds since 1970 UTC
    qint64 changedNs = 0;

    bool operator==(const FileStamp&) const = default;
    // Whether the bytes are the same: neither the size nor the content time moved (writing a tag moves only
    // the status time). A file that could not be stat'ed once and can now has changed.
    static bool sameContent(const std::optional<FileStamp>& a, const std::optional<FileStamp>& b)
    {
        if (!a || !b)
            return a.has_value() == b.has_value();
        return a->size == b->size && a->modifiedNs == b->modifiedNs;
    }

    // nullopt when the file cannot be stat'ed (gone, no permission).
    static std::optional<FileStamp> of(const QString& path);
};

} // namespace lumaro::platform
