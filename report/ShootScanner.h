// SPDX-License-Identifier: GPL-3.0-or-later
// Finds the pictures of a folder (or a folder tree) and reads their headers and tags, on every core.
#pragma once

#include "report/ShotFile.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>

namespace lumaro::platform {
class FileTagStore;
}

namespace lumaro::report {

struct ScanResult
{
    QList<ShotFile> files;  // readable pictures, in listing order (folder by folder, names in byte order)
    QStringList failures;   // "path: reason" for each picture or folder that could not be read
    bool cancelled = false; // files then holds nothing
};

// Blocking; call from any thread but the GUI's. The headers are read on the global thread pool and on the
// calling thread together, so a caller that is itself a pool thread never waits for a free one. `progress` is
// called on the calling thread, with the number of files read so far. Setting `*cancel` stops the run soon
// after; the result then says cancelled. Hidden entries (dot-names, names in `.hidden`, `_index`) are
// skipped; in a tree walk each real folder is visited once, whatever links point at it.
class ShootScanner
{
public:
    using Progress = std::function<void(qsizetype done, qsizetype total)>;

    explicit ShootScanner(const platform::FileTagStore& tags);

    // nullopt with `error` set when `folder` itself cannot be listed.
    std::optional<ScanResult> scan(const QString& folder, bool deep, const std::atomic_bool* cancel,
                                   const Progress& progress, QString* error = nullptr) const;

private:
    const platform::FileTagStore& m_tags;
};

} // namespace lumaro::report
