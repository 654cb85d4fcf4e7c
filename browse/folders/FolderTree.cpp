// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/folders/FolderTree.h"

#include "browse/state/FolderContents.h"

#include <QFileInfo>
#include <QSet>

#include <QPair>

namespace lumaro::browse {

QList<FolderTreeEntry> FolderTree::walk(const QString& root, int limit, bool* truncated)
{
    QList<FolderTreeEntry> entries;
    QSet<QString> seen; // canonical paths, so a link loop ends
    // An explicit stack rather than recursion: card dumps can nest deeply.
    QList<QPair<QString, int>> pending{{root, 0}};
    bool cut = false;
    while (!pending.isEmpty()) {
        if (entries.size() >= limit) {
            cut = true;
            break;
        }
        const auto [folder, depth] = pending.takeLast();
        const QString canonical = QFileInfo(folder).canonicalFilePath();
        if (depth > 0 && seen.contains(canonical))
            continue;
        seen.insert(canonical);
        const auto contents = FolderContents::read(folder);
        entries.append({folder, depth, contents ? int(contents->pictures.size()) : 0, contents.has_value()});
        if (!contents)
            continue;
        for (auto child = contents->subfolders.crbegin(); child != contents->subfolders.crend(); ++child)
            pending.append({*child, depth + 1});
    }
    if (truncated)
        *truncated = cut;
    return entries;
}

} // namespace lumaro::browse
