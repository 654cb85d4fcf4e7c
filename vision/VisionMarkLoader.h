// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the category mark of each picture back from a folder's vision index files.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::vision {

struct VisionMarks
{
    QHash<QString, QString> markByFileName;
    int resultCount = 0;    // results read over all index files, with or without a usable mark
    QStringList indexFiles; // the files read, oldest run first
};

// Blocking; any thread. When several runs exist, a file's mark from the newest run wins, in IndexRunOrder
// (a run dated in the future never wins). Only regular files up to VisionIndexFile::kMaxBytes are read.
// A file that is not a JSON object is logged and skipped. A "fileName" containing "/" or equal to "." or ".."
// is never taken as a name; an entry without a string "classification" gives no mark.
class VisionMarkLoader
{
public:
    // nullopt when the folder has no readable index file at all.
    static std::optional<VisionMarks> load(const QString& pictureFolder, const QString& logTag);
    static bool isSafeFileName(const QString& name);
};

} // namespace lumaro::vision
