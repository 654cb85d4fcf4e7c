// SPDX-License-Identifier: GPL-3.0-or-later
// Copies pictures the way a photographer's files must be copied: never over an existing file, never
// half-written, with their colour tags (the user.* extended attributes a plain copy drops) and modification
// time kept.
#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace lumaro::platform {

struct CopyOptions
{
    // Called after each chunk with the bytes copied so far and the total; returning false abandons the copy
    // (cancel, or a test's injected failure half-way). The partial file is removed.
    std::function<bool(qint64 copied, qint64 total)> progress;
    // Flush the copy to disk before it is renamed into place.
    bool syncToDisk = false;
};

// Thread-safe, blocking. Every copy is written to a hidden temporary file in the destination folder and
// renamed into place, so a reader never sees a half-written picture and a failure leaves nothing behind.
class FileCopier
{
public:
    // Copies `source` into `folder` as `name`, or as the first free "stem_1.ext", "stem_2.ext", … when the
    // name is taken (cameras reuse IMG_0001.JPG once their counter wraps). Returns the path written.
    static std::optional<QString> copyWithoutOverwriting(const QString& source, const QString& folder,
                                                         const QString& name, QString* error = nullptr,
                                                         const CopyOptions& options = {});
    // Copies `source` to `destination`, replacing a file already there; for operations whose stated rule is
    // to overwrite. The old file stays whole until the new one is complete.
    static bool copyReplacing(const QString& source, const QString& destination, QString* error = nullptr,
                              const CopyOptions& options = {});
    // The first name in `folder` that no entry uses: `name`, then "stem_1.ext", "stem_2.ext", …
    static QString freeName(const QString& folder, const QString& name);
    // Removes the hidden temporary files that copies into `folder` left when their process was killed;
    // returns how many. Only for a folder no copy is writing into now.
    static int removePartialCopies(const QString& folder);
    // Asks the kernel to start reading `path` into the page cache now, without waiting: a batch names its next
    // file while it copies the current one, so the card never sits idle between files. Only the first 64 MB
    // (a whole photo or RAW; a long video reads ahead as its own copy goes). Does nothing when the file cannot
    // be opened.
    static void readAheadSoon(const QString& path);
    // Copies the user.* extended attributes; true when there were none or all were copied.
    static bool copyUserAttributes(const QString& source, const QString& destination);
};

// Renames without ever replacing an existing entry (RENAME_NOREPLACE, or link + unlink where the file system
// lacks it). False with `error` set when `to` exists or the rename fails.
bool renameWithoutReplacing(const QString& from, const QString& to, QString* error = nullptr);

} // namespace lumaro::platform
