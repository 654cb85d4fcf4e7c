// SPDX-License-Identifier: GPL-3.0-or-later
// Names of a run's files: "vision_index_" / "vision_summary_" + run stamp + "_" + folder key + ".json".
#pragma once

#include <QDateTime>
#include <QString>

namespace lumaro::vision {

// Pure functions; any thread. Readers find the files by pattern, never by the folder key.
class VisionIndexNaming
{
public:
    // Local time "MMddHHmmss".
    static QString runStamp(const QDateTime& startedAt);
    // Last path component with every character outside [a-zA-Z0-9_-] turned into "-", lower-cased, then "_"
    // and the absolute value of the full path's hash in base 36 ("my-trip--1_3fz9k2…").
    static QString folderKey(const QString& folderPath);
    static QString indexFileName(const QString& stamp, const QString& key);
    static QString summaryFileName(const QString& stamp, const QString& key);
};

} // namespace lumaro::vision
