// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/IndexFolder.h"

#include "platform/Log.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/HiddenList.h"

#include <QDir>
#include <QFileInfo>

namespace lumaro::vision {

using platform::Log;

namespace {
const QString kIndexName = QStringLiteral("_index");
}

QString IndexFolder::pathFor(const QString& pictureFolder)
{
    return QDir(pictureFolder).filePath(kIndexName);
}

std::optional<QString> IndexFolder::ensure(const QString& pictureFolder, const QString& logTag)
{
    const QString path = pathFor(pictureFolder);
    const QFileInfo info(path);
    if (info.exists() || info.isSymLink()) {
        if (info.isDir())
            return path;
        Log::line(logTag, QStringLiteral("_index 路径存在但不是目录"));
        return std::nullopt;
    }
    Log::line(logTag, QStringLiteral("创建 _index 目录: ") + path);
    if (!QDir().mkpath(path)) {
        const QString reason = QFileInfo(pictureFolder).isWritable() ? QStringLiteral("无法创建目录")
                                                                     : QStringLiteral("文件夹不可写");
        Log::line(logTag, QStringLiteral("创建 _index 目录失败: ") + reason);
        return std::nullopt;
    }
    hideInFileManagers(pictureFolder);
    return path;
}

bool IndexFolder::isBlocked(const QString& pictureFolder, const QString& logTag)
{
    const QString path = pathFor(pictureFolder);
    const QFileInfo info(path);
    if ((info.exists() || info.isSymLink()) && !info.isDir()) {
        Log::line(logTag, QStringLiteral("_index 路径存在但不是目录"));
        return true;
    }
    // Where the folder would be created, or written into.
    const QString writtenFolder = info.isDir() ? path : pictureFolder;
    if (platform::FileNameCodec::isWritable(writtenFolder))
        return false;
    Log::line(logTag,
              (info.isDir() ? QStringLiteral("_index 目录不可写: ") : QStringLiteral("文件夹不可写: ")) +
                  writtenFolder);
    return true;
}

bool IndexFolder::hideInFileManagers(const QString& pictureFolder)
{
    return platform::HiddenList::add(pictureFolder, kIndexName.toUtf8());
}

QStringList IndexFolder::jsonFiles(const QString& pictureFolder, const QString& prefix)
{
    QDir index(pathFor(pictureFolder));
    if (!index.exists())
        return {};
    QStringList paths;
    for (const QString& name : index.entryList({prefix + QStringLiteral("*.json")}, QDir::Files, QDir::Name))
        paths << index.filePath(name);
    return paths;
}

} // namespace lumaro::vision
