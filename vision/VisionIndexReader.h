// SPDX-License-Identifier: GPL-3.0-or-later
// Reads a picture's mark and tags back from a folder's index files, newest run first.
#pragma once

#include "vision/VisionRecognitionResult.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::vision {

// Blocking; any thread; never call it on the main thread (a folder may hold many large runs). Runs are
// ordered by IndexRunOrder, the same order the grouping's mark loader applies, so the app shows the mark
// grouping will use. A picture is found under its grouped name ("_G03_IMG_1.jpg") or its plain one, whichever
// the run saw: grouping renames files after the analysis.
class VisionIndexReader
{
public:
    // `_index/vision_index_*.json` of the folder, newest run first; unreadable files are left out.
    static QStringList indexFilesNewestFirst(const QString& pictureFolder);
    // The picture's result from the newest run that analysed it, or nullopt. `unreadable`, when given,
    // receives the index files that could not be read or were not a JSON object, so the caller can say so in
    // its own log.
    static std::optional<VisionRecognitionResult>
    resultFor(const QString& pictureFolder, const QString& fileName, QStringList* unreadable = nullptr);
    // Every picture's result from the newest run that analysed it, keyed by lookupName().
    static QHash<QString, VisionRecognitionResult> latestResults(const QString& pictureFolder);
    // The key a picture is found under in latestResults(): its name without a group prefix.
    static QString lookupName(const QString& fileName);
};

} // namespace lumaro::vision
