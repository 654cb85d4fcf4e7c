// SPDX-License-Identifier: GPL-3.0-or-later
// A folder and every visible folder below it, each with the number of pictures directly inside.
#pragma once

#include <QList>
#include <QString>

namespace lumaro::browse {

// Depth-first, each folder before its children, children in browsing order: the same walk as deep mode, so
// row k of the map is folder k of the walk. A folder that cannot be read is kept with `readable` false and
// no children. Symbolic links to folders are followed once: a link back up the tree is not walked again.
struct FolderTreeEntry
{
    QString path;
    int depth = 0; // 0 for the root
    int pictureCount = 0;
    bool readable = true;
};

class FolderTree
{
public:
    // Blocking; any thread. Stops after `limit` folders (the rest are left out, `truncated` says so).
    static QList<FolderTreeEntry> walk(const QString& root, int limit = 20000, bool* truncated = nullptr);
};

} // namespace lumaro::browse
