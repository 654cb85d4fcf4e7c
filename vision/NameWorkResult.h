// SPDX-License-Identifier: GPL-3.0-or-later
// What a grouping or clean-prefix task did: its outcome, the task's text, and every rename, skip and failure.
#pragma once

#include "vision/BatchRenamer.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace lumaro::vision {

enum class NameWorkOutcome {
    completed,         // the renames were attempted (some may have been skipped or failed)
    nothingToDo,       // no files, or none that the task applies to
    missingIndex,      // grouping needs the folder's vision index and there is none
    folderUnavailable, // the folder's token did not resolve or the folder cannot be read
    failed,            // the task could not start
};

struct NameWorkResult
{
    NameWorkOutcome outcome = NameWorkOutcome::failed;
    QString message;          // the task's own text, shown to the user
    QList<NameRename> renames; // done, or under a dry run those that would be
    QStringList skipped;      // files left with their names: new name taken, or nothing left of the name
    QStringList failures;     // "old -> new: reason"
    int groupCount = 0;
    bool dryRun = false;

    bool leftFilesUnrenamed() const { return !skipped.isEmpty() || !failures.isEmpty(); }
};

} // namespace lumaro::vision
