// SPDX-License-Identifier: GPL-3.0-or-later
// What a scan of a memory card found to import, sorted by kind, and what an import of it will copy.
#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QUuid>

namespace lumaro::cards {

struct NewFileInfo
{
    QStringList jpgFiles;   // full paths
    QStringList rawFiles;
    QStringList videoFiles;
    qint64 totalSize = 0;   // bytes to copy

    bool isEmpty() const { return jpgFiles.isEmpty() && rawFiles.isEmpty() && videoFiles.isEmpty(); }
    qsizetype fileCount() const { return jpgFiles.size() + rawFiles.size() + videoFiles.size(); }
};

// One pending import, as the import dialog shows it.
struct ImportData
{
    QUuid id = QUuid::createUuid();
    QString sourcePath; // the card's mount path
    NewFileInfo newFiles;
};

} // namespace lumaro::cards

Q_DECLARE_METATYPE(lumaro::cards::ImportData)
