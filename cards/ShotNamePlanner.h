// SPDX-License-Identifier: GPL-3.0-or-later
// Chooses the names a card's files take in a roll, one stem per shot across every kind folder.
#pragma once

#include "cards/NewFileInfo.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

namespace lumaro::cards {

struct PlannedName
{
    QString name;              // the file name in its kind folder
    bool alreadyThere = false; // a resumed import finds this very file in place (same size and time)
};

// A stem is taken once any kind folder holds a file of that stem (compared as the pairing compares names), so
// a shot's JPG and RAW always get the same stem and no two shots ever share one. Shots are named in the order
// of their first file, so the first shot of a wrapped counter keeps the plain name. Any thread; not shared.
class ShotNamePlanner
{
public:
    // The kind folders of the roll (they may not exist yet).
    explicit ShotNamePlanner(const QStringList& kindFolders);

    // Stems an interrupted import already gave to shots, by shot key; those shots keep them.
    void keepStems(const QHash<QString, QString>& stemsByShot);
    // Look for each shot's files already in place before choosing a name (for a resumed import).
    void setResuming(bool resuming) { m_resuming = resuming; }

    // `files`: each file's full path with the kind folder it goes to; `shotOf` gives its shot key.
    QHash<QString, PlannedName> plan(const QList<std::pair<QString, QString>>& files,
                                     const QHash<QString, CardFileStamp>& stamps,
                                     const std::function<QString(const QString&)>& shotOf);

private:
    QSet<QString> m_taken; // matching keys of the stems in use
    QHash<QString, QString> m_kept;
    bool m_resuming = false;
};

} // namespace lumaro::cards
