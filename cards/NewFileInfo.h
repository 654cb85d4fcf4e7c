// SPDX-License-Identifier: GPL-3.0-or-later
// What a scan of a memory card found to import, sorted by kind, and what an import of it will copy.
#pragma once

#include <QDateTime>
#include <QHash>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QUuid>

namespace lumaro::cards {

// What tells a file on a card from another of the same name: its size and modification time.
struct CardFileStamp
{
    qint64 size = 0;
    qint64 modifiedMs = 0;
};

struct NewFileInfo
{
    QStringList jpgFiles; // full paths
    QStringList rawFiles;
    QStringList videoFiles;
    qint64 totalSize = 0;                 // bytes to copy
    QHash<QString, CardFileStamp> stamps; // by full path, for every file in the three lists
    QStringList skippedEntries;           // hidden and system entries left on the card, relative to its root
    int alreadyImportedCount = 0;         // files left out because they were imported from this card before

    bool isEmpty() const { return jpgFiles.isEmpty() && rawFiles.isEmpty() && videoFiles.isEmpty(); }
    qsizetype fileCount() const { return jpgFiles.size() + rawFiles.size() + videoFiles.size(); }
};

// One pending import, as the import dialog shows it.
struct ImportData
{
    QUuid id = QUuid::createUuid();
    QString sourcePath;   // the card's mount path
    NewFileInfo newFiles; // what was not imported from this card before
    NewFileInfo allFiles; // everything on the card, for "import everything again"
    QDateTime lastImport; // the card's last finished import; invalid for a card never imported
    QString resumeRoll;   // the roll of an interrupted import of this card, taken up by the next import
    QString memoryError;  // why the cards imported before could not be read (every file is then offered)
};

} // namespace lumaro::cards

Q_DECLARE_METATYPE(lumaro::cards::ImportData)
