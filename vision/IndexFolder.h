// SPDX-License-Identifier: GPL-3.0-or-later
// The hidden `_index` folder beside a folder's pictures, where every file Lumaro generates for it lives.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::vision {

// Thread-safe, blocking. `logTag` is the writer's own tag ("VISION_INDEX", …): each writer logs the rule's
// lines under its name.
class IndexFolder
{
public:
    static QString pathFor(const QString& pictureFolder);

    // The `_index` folder ready for writing, or nullopt: an entry of that name that is not a directory is
    // never replaced ("… - _index 路径存在但不是目录"); a missing one is created with its parents ("… - 创建
    // _index 目录: ", or "… - 创建 _index 目录失败: " and the reason). A created folder is listed in the
    // picture folder's
    // ".hidden" file, so file managers hide it as the app does.
    static std::optional<QString> ensure(const QString& pictureFolder, const QString& logTag);
    // Whether `_index` could not be written, logged: an entry of that name that is not a directory stands in
    // the way (as ensure() logs it), or this process may not write into the `_index` folder or, while there
    // is none, into the picture folder (a card or a share mounted read-only). Creates nothing: a run checks
    // this before its work, so that it does not read a whole folder to find it cannot keep the result, and
    // creates the folder only when it writes.
    static bool isBlocked(const QString& pictureFolder, const QString& logTag);

    // Adds `_index` to the folder's ".hidden" file unless it is already there; other lines are kept.
    static bool hideInFileManagers(const QString& pictureFolder);

    // Full paths of `_index/<prefix>*.json` ("vision_index_", "vision_summary_"), sorted by name; empty when
    // there is no `_index` folder.
    static QStringList jsonFiles(const QString& pictureFolder, const QString& prefix);
};

} // namespace lumaro::vision
