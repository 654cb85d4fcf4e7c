// SPDX-License-Identifier: GPL-3.0-or-later
// Sorts pictures into one folder per poster identifier, keeps a log of every move, and undoes it from the
// log.
#pragma once

#include "platform/files/FileMover.h"
#include "vision/WatermarkResult.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace lumaro::vision {

struct WatermarkMove
{
    QString fileName; // the picture's name, the same in both places
    QString folder;   // the identifier's folder under the target folder
    QString identifier;
};

struct WatermarkSortOptions
{
    QString targetFolder; // where the identifier folders go; empty: the picture folder itself
    bool copy = false;    // copy instead of moving
    bool dryRun = false;  // list what would be done, change nothing
    std::function<void(int done, int total)> progress;
};

struct WatermarkSortReport
{
    QList<WatermarkMove> moved; // done, or under a dry run those that would be
    QStringList unidentified;   // pictures without a readable identifier: they stay where they are
    QStringList skipped;        // "name -> folder/name": the target name is taken
    QStringList failures;       // "name: reason"
    QString logPath;            // `_index/watermark_moves_<stamp>.json`; empty under a dry run
    bool logRefused = false;    // the log could not be written: nothing was moved
};

struct WatermarkUndoReport
{
    int restored = 0;      // pictures put back (or copies removed)
    int alreadyBack = 0;   // entries whose picture was never moved or is back already
    QStringList conflicts; // "name: reason": left as they are
    QString error;         // the log could not be used at all (nothing was done)
};

// Blocking; any thread. Nothing is ever overwritten: a taken name is skipped and reported. The log is
// written before the first move (every planned move, marked undone) and again when the batch ends, so even a
// batch cut short can be undone from it. Same-volume moves are renames; across volumes a move is a whole copy
// followed by the removal of the original. Logs under "WATERMARK".
class WatermarkSorter
{
public:
    explicit WatermarkSorter(platform::FileMover mover = platform::FileMover());

    WatermarkSortReport sort(const QString& folder, const QList<WatermarkResult>& results,
                             const WatermarkSortOptions& options) const;

    // Puts every logged picture back into its folder. A moved picture whose old name has been taken since
    // stays; a copy is removed only while its bytes are still those of its original.
    WatermarkUndoReport undo(const QString& logPath) const;

    static QString logFileName(const QString& stamp);

private:
    platform::FileMover m_mover;
};

} // namespace lumaro::vision
