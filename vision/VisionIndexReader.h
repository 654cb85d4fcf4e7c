// SPDX-License-Identifier: GPL-3.0-or-later
// Reads a picture's mark and tags back from a folder's index files, newest run first.
#pragma once

#include "vision/VisionRecognitionResult.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::vision {

// Blocking; any thread. Runs are ordered by their "generatedAt" time (a file without a readable time counts
// as older than any dated one; equal times fall back to the file name, whose stamp grows with the run), the
// same order the grouping's mark loader applies, so the app shows the mark grouping will use.
class VisionIndexReader
{
public:
    // `_index/vision_index_*.json` of the folder, newest run first; unreadable files are left out.
    static QStringList indexFilesNewestFirst(const QString& pictureFolder);
    // The picture's result from the newest run that analysed it, or nullopt. `unreadable`, when given, receives
    // the index files that could not be read or were not a JSON object, so the caller can say so in its own log.
    static std::optional<VisionRecognitionResult> resultFor(const QString& pictureFolder, const QString& fileName,
                                                            QStringList* unreadable = nullptr);
    // Every picture's result from the newest run that analysed it, by file name.
    static QHash<QString, VisionRecognitionResult> latestResults(const QString& pictureFolder);
};

} // namespace lumaro::vision
