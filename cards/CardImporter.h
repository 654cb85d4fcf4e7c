// SPDX-License-Identifier: GPL-3.0-or-later
// Copies what a card scan found into the next free "rollNN" folder of the import location, one sub-folder per
// kind.
#pragma once

#include "cards/FileFailure.h"
#include "cards/NewFileInfo.h"

#include <QList>
#include <QMetaType>
#include <QString>

#include <functional>

namespace lumaro::cards {

class CardImportJournal;

struct ImportOutcome
{
    QString destination; // the roll folder; empty when it could not be made
    int copiedCount = 0;
    int failedCount = 0;
    int renamedCount = 0; // copies that took a free name because the name was taken
    bool resumed = false; // an interrupted import of this card was taken up in its own roll
    int partialCopiesRemoved = 0;
    QList<FileFailure> failures; // files on the card that were not copied
    QString error; // why nothing was copied (no location, the roll folder could not be made)
};

// Nothing on the card or in the destination is ever overwritten. A shot keeps one name across its kinds:
// cameras reuse IMG_0001 in another DCIM folder once their counter wraps, and then the whole shot (its JPG,
// its RAW) takes the first suffix free in every kind folder, "IMG_0001_1", so a later pairing clean or RAW
// pick still pairs it. A shot is the stem within its card folder, compared as the pairing compares names
// (Unicode-equal, any case). Sub-folders "JPG", "RAW" and "VIDEO" are created only for kinds that have files.
// A file that fails is logged and skipped; the rest are copied. Colour tags and times are kept. With a
// journal, each copied file is remembered as soon as it is in place, and an import of the same card that was
// cut short is resumed in its own roll: the shots it had begun keep their names, a file that reached its
// place just before the kill is recognised by its size and time instead of being copied twice. Partial copies
// left by a killed import are removed from every roll no live import holds (each import locks its roll while
// it runs). Blocking; any thread; the callbacks run on the calling thread.
class CardImporter
{
public:
    struct Callbacks
    {
        std::function<void(const QString& status)> status;
        std::function<void(double done)> progress;
        // Called per copied chunk; returning false abandons that file's copy (cancel, or a test's injected
        // fault).
        std::function<bool(const QString& source, qint64 copied, qint64 total)> chunkCopied;
    };

    // The roll folder the next import into `importLocation` would use: one past the highest "rollNN" there.
    static QString nextRollFolder(const QString& importLocation);

    static ImportOutcome importFiles(const NewFileInfo& files, const QString& importLocation,
                                     const Callbacks& callbacks = {}, CardImportJournal* journal = nullptr);

    // The shot a file on the card belongs to: its folder and its stem's matching key.
    static QString shotKey(const QString& path);

    static QString jpgFolderName() { return QStringLiteral("JPG"); }
    static QString rawFolderName() { return QStringLiteral("RAW"); }
    static QString videoFolderName() { return QStringLiteral("VIDEO"); }
    // Held in the roll while an import copies into it.
    static QString lockFileName() { return QStringLiteral(".lumaro-import.lock"); }
};

} // namespace lumaro::cards

Q_DECLARE_METATYPE(lumaro::cards::ImportOutcome)
