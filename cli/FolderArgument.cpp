// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/FolderArgument.h"

#include "platform/FolderAccessToken.h"

#include <QFileInfo>

namespace lumaro::cli {

std::optional<QString> problemWithFolder(const QString& path)
{
    if (path.isEmpty())
        return QStringLiteral("no folder given");
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("no such folder: %1").arg(path);
    if (!info.isDir())
        return QStringLiteral("is a file, not a folder: %1").arg(path);
    if (!platform::FolderAccessToken::startAccess(path))
        return QStringLiteral("cannot read folder (permission denied): %1").arg(path);
    return std::nullopt;
}

} // namespace lumaro::cli
