// SPDX-License-Identifier: GPL-3.0-or-later
// The two naming tasks on a folder: group related files under "_G<n>_" prefixes, and take such prefixes off.
#pragma once

#include "vision/BatchRenamer.h"
#include "vision/NameWorkResult.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

namespace lumaro::vision {

struct NameWorkOptions
{
    bool dryRun = false;
    // When not empty, the folder is reached through this access token and the path is only its fallback name.
    QByteArray folderToken;
    std::function<void(int done, int total)> progress;
};

// Stateless; blocking, so callers run it off the main thread. `fileNames` is the folder's file list in
// browsing order (the walk's order); names with "/" or equal to "." or ".." are ignored.
// Grouping needs the folder's vision index: without one it stops after the advice lines. Files already
// carrying a group prefix are never grouped again, so grouping twice changes nothing the second time, and
// clean-prefix after grouping gives back the original names. No rename ever replaces an existing file.
class NameGroupingService
{
public:
    explicit NameGroupingService(RenameFunction rename = defaultRename());

    NameWorkResult groupFiles(const QString& folder, const QStringList& fileNames,
                              const NameWorkOptions& options = {}) const;
    NameWorkResult cleanPrefixes(const QString& folder, const QStringList& fileNames,
                                 const NameWorkOptions& options = {}) const;

    static RenameFunction defaultRename();

private:
    RenameFunction m_rename;
};

} // namespace lumaro::vision
