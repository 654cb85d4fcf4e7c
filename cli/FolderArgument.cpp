// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/FolderArgument.h"

#include "platform/FolderAccessToken.h"
#include "platform/files/FileNameCodec.h"

#include <QDir>
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

std::optional<QString> problemWithOutputFolder(const QString& path)
{
    if (QFileInfo(path).exists() && !QFileInfo(path).isDir())
        return QStringLiteral("is a file, not a folder");
    if (!QDir().mkpath(path))
        return QStringLiteral("cannot create the folder");
    if (!platform::FileNameCodec::isWritable(path))
        return QStringLiteral("a read-only folder");
    return std::nullopt;
}

} // namespace lumaro::cli
