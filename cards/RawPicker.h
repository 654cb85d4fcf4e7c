// SPDX-License-Identifier: GPL-3.0-or-later
// Copies the RAW files that have a JPG partner into "RAW_PICK" beside the RAW folder.
#pragma once

#include "cards/FileFailure.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace lumaro::cards {

struct PickResult
{
    QString pickFolder;   // the RAW_PICK folder; empty when it could not be made
    int copiedCount = 0;
    int failedCount = 0;
    QList<FileFailure> failures; // as many as failedCount
    QString errorMessage; // the text shown to the user when RAW_PICK could not be made
};

// A pick always overwrites a same-named file already in RAW_PICK (picking twice refreshes the copies and keeps the
// other files there); the old file stays whole until its replacement is complete. Copies keep the files' colour tags
// and times. A file that fails is logged "copy error: …" and the pick goes on. Blocking; any thread; `progress` is
// called on the calling thread after each file.
class RawPicker
{
public:
    using Progress = std::function<void(double done)>;

    // "<parent of rawFolder>/RAW_PICK".
    static QString pickFolderFor(const QString& rawFolder);

    static PickResult pick(const QStringList& matchedRawFiles, const QString& rawFolder, const Progress& progress = {});
};

} // namespace lumaro::cards
