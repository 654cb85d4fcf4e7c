// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/FileSystemService.h"

#include "platform/DirectoryLister.h"
#include "platform/FolderAccessToken.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace lumaro::browse {

using platform::DirectoryEntry;
using platform::DirectoryLister;
using platform::FolderAccessToken;
using platform::Log;

namespace {

const QString kTag = QStringLiteral("FileSystemService");

// Sorted by the names' bytes: for UTF-8 that is plain code-point order, case-sensitive, not numeric.
QStringList sortedPaths(const QString& folder, std::vector<QByteArray>& names)
{
    std::sort(names.begin(), names.end());
    QStringList paths;
    paths.reserve(qsizetype(names.size()));
    const QString prefix = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    for (const QByteArray& name : names)
        paths << prefix + QFile::decodeName(name);
    return paths;
}

// The lower-cased suffix after the last dot, taken from the raw bytes to keep the hot loop cheap.
bool hasPictureSuffix(const QByteArray& name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || name.size() - dot - 1 > 4)
        return false;
    const QByteArray suffix = name.mid(dot + 1).toLower();
    static const std::vector<QByteArray> accepted = [] {
        std::vector<QByteArray> list;
        for (const QString& extension : FileSystemService::pictureExtensions())
            list.push_back(extension.toLatin1());
        return list;
    }();
    return std::find(accepted.begin(), accepted.end(), suffix) != accepted.end();
}

} // namespace

FileSystemService& FileSystemService::shared()
{
    static FileSystemService service;
    return service;
}

const QStringList& FileSystemService::pictureExtensions()
{
    static const QStringList extensions{
        QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("png"), QStringLiteral("heic"),
        QStringLiteral("heif"), QStringLiteral("tiff"), QStringLiteral("tif"), QStringLiteral("bmp"),
        QStringLiteral("gif"), QStringLiteral("webp"), QStringLiteral("cr2")};
    return extensions;
}

bool FileSystemService::isPictureName(const QString& fileName)
{
    return hasPictureSuffix(QFile::encodeName(fileName));
}

QStringList FileSystemService::loadImageFiles(const QString& folder) const
{
    Log::line(kTag, QStringLiteral("开始加载文件夹: ") + folder);
    if (!FolderAccessToken::startAccess(folder))
        Log::line(kTag, QStringLiteral("无法访问文件夹，可能需要权限"));
    QString error;
    const auto entries = DirectoryLister::listVisible(folder, &error);
    FolderAccessToken::stopAccess(folder);
    if (!entries) {
        Log::line(kTag, QStringLiteral("加载图像文件失败: ") + error);
        return {};
    }
    Log::line(kTag, QStringLiteral("文件夹中共有 %1 个项目").arg(entries->size()));
    std::vector<QByteArray> names;
    for (const DirectoryEntry& entry : *entries) {
        if (entry.kind == DirectoryEntry::Kind::file && hasPictureSuffix(entry.nativeName))
            names.push_back(entry.nativeName);
    }
    const QStringList paths = sortedPaths(folder, names);
    Log::line(kTag, QStringLiteral("过滤后找到 %1 个图像文件").arg(paths.size()));
    return paths;
}

QStringList FileSystemService::loadImageFiles(const QByteArray& folderToken, const QString& fallbackPath) const
{
    QString error;
    const auto resolved = FolderAccessToken::resolve(folderToken, &error);
    if (!resolved) {
        Log::line(kTag, QStringLiteral("解析书签数据失败: ") + error);
        return loadImageFiles(fallbackPath);
    }
    return loadImageFiles(resolved->path);
}

QStringList FileSystemService::subfolders(const QString& parent) const
{
    QString error;
    const auto entries = DirectoryLister::listVisible(parent, &error);
    if (!entries) {
        Log::line(kTag, QStringLiteral("获取子文件夹列表失败: ") + error);
        return {};
    }
    Log::line(kTag, QStringLiteral("父目录中共有 %1 个项目").arg(entries->size()));
    std::vector<QByteArray> names;
    for (const DirectoryEntry& entry : *entries) {
        if (entry.kind == DirectoryEntry::Kind::directory)
            names.push_back(entry.nativeName);
    }
    const QStringList paths = sortedPaths(parent, names);
    QStringList shortNames;
    for (const QString& path : paths)
        shortNames << QFileInfo(path).fileName();
    Log::line(kTag, QStringLiteral("找到 %1 个子文件夹: ").arg(paths.size()) + shortNames.join(QStringLiteral(", ")));
    return paths;
}

QStringList FileSystemService::recursiveSubfolders(const QString& base) const
{
    QStringList walked;
    QStringList pending = subfolders(base);
    std::reverse(pending.begin(), pending.end());
    // An explicit stack rather than recursion: card dumps can nest deeply, and a link loop must not overflow.
    QSet<QString> seen;
    while (!pending.isEmpty()) {
        const QString folder = pending.takeLast();
        const QString canonical = QFileInfo(folder).canonicalFilePath();
        if (seen.contains(canonical))
            continue;
        seen.insert(canonical);
        walked << folder;
        QStringList children = subfolders(folder);
        std::reverse(children.begin(), children.end());
        pending << children;
    }
    return walked;
}

QString FileSystemService::resolvePath(const QString& storedPath) const
{
    const QString home = QDir::homePath();
    QString relative = storedPath;
    if (relative.startsWith(QStringLiteral("~/")))
        relative = relative.mid(2);
    const QString resolved = QDir::isAbsolutePath(relative) ? QDir::cleanPath(relative)
                                                            : QDir::cleanPath(QDir(home).filePath(relative));
    Log::line(kTag, QStringLiteral("主目录: ") + home);
    Log::line(kTag, QStringLiteral("相对路径: ") + relative);
    Log::line(kTag, QStringLiteral("路径组件: ") + resolved.split(QLatin1Char('/'), Qt::SkipEmptyParts).join(QStringLiteral(", ")));
    Log::line(kTag, QStringLiteral("存储路径: ") + resolved);
    return resolved;
}

std::optional<QByteArray> FileSystemService::createBookmarkData(const QString& folder) const
{
    QString error;
    auto token = FolderAccessToken::create(folder, &error);
    if (!token) {
        Log::line(kTag, QStringLiteral("创建书签数据失败: ") + error);
        return std::nullopt;
    }
    Log::line(kTag, QStringLiteral("成功创建文件夹书签数据"));
    return token;
}

} // namespace lumaro::browse
