// SPDX-License-Identifier: GPL-3.0-or-later
// Copies what a card scan found into the next free "rollNN" folder of the import location, one sub-folder per kind.
#pragma once

#include "cards/NewFileInfo.h"

#include <QMetaType>
#include <QString>

#include <functional>

namespace lumaro::cards {

struct ImportOutcome
{
    QString destination; // the roll folder; empty when it could not be made
    int copiedCount = 0;
    int failedCount = 0;
    int renamedCount = 0; // copies that took a free name because the name was taken
    QString error;        // why nothing was copied (no location, the roll folder could not be made)
};

// Nothing on the card or in the destination is ever overwritten: a taken name (cameras reuse IMG_0001.JPG in
// another DCIM folder once their counter wraps) gets the first free "IMG_0001_1.JPG". Sub-folders "JPG", "RAW" and
// "VIDEO" are created only for kinds that have files. A file that fails is logged and skipped; the rest are copied.
// Colour tags and times are kept. Blocking; any thread; the callbacks run on the calling thread.
class CardImporter
{
public:
    struct Callbacks
    {
        std::function<void(const QString& status)> status;
        std::function<void(double done)> progress;
        // Called per copied chunk; returning false abandons that file's copy (cancel, or a test's injected fault).
        std::function<bool(const QString& source, qint64 copied, qint64 total)> chunkCopied;
    };

    // The roll folder the next import into `importLocation` would use: one past the highest "rollNN" there.
    static QString nextRollFolder(const QString& importLocation);

    static ImportOutcome importFiles(const NewFileInfo& files, const QString& importLocation,
                                     const Callbacks& callbacks = {});

    static QString jpgFolderName() { return QStringLiteral("JPG"); }
    static QString rawFolderName() { return QStringLiteral("RAW"); }
    static QString videoFolderName() { return QStringLiteral("VIDEO"); }
};

} // namespace lumaro::cards

Q_DECLARE_METATYPE(lumaro::cards::ImportOutcome)
