// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/FileSystemService.h"

#include "browse/state/FolderContents.h"

#include "platform/files/FileNameCodec.h"

#include "platform/DirectoryLister.h"
#include "platform/FolderAccessToken.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>

namespace lumaro::browse {

using platform::DirectoryEntry;
using platform::DirectoryLister;
using platform::FolderAccessToken;
using platform::Log;

namespace {

const QString kTag = QStringLiteral("FileSystemService");

// Sorted by the names' bytes: for UTF-8 that is plain code-point order, case-sensitive, not numeric.
QStringList sortedNames(std::vector<QByteArray>& names)
{
    std::sort(names.begin(), names.end());
    QStringList decoded;
    decoded.reserve(qsizetype(names.size()));
    for (const QByteArray& name : names)
        decoded << platform::FileNameCodec::decode(name);
    return decoded;
}

QStringList joinedWith(const QString& folder, const QStringList& names)
{
    const QString prefix = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    QStringList paths;
    paths.reserve(names.size());
    for (const QString& name : names)
        paths << prefix + name;
    return paths;
}

// The lower-cased suffix after the last dot is one of the eleven. Runs once per directory entry, so it compares
// bytes in place instead of building lower-cased copies.
constexpr std::array<QByteArrayView, 11> kPictureExtensions{"jpg", "jpeg", "png", "heic", "heif", "tiff",
                                                            "tif", "bmp",  "gif", "webp", "cr2"};

bool hasPictureSuffix(const QByteArray& name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0)
        return false;
    const QByteArrayView suffix = QByteArrayView(name).sliced(dot + 1);
    return std::any_of(kPictureExtensions.begin(), kPictureExtensions.end(),
                       [&suffix](QByteArrayView candidate) { return suffix.compare(candidate, Qt::CaseInsensitive) == 0; });
}

} // namespace

FileSystemService& FileSystemService::shared()
{
    static FileSystemService service;
    return service;
}

const QStringList& FileSystemService::pictureExtensions()
{
    static const QStringList extensions = [] {
        QStringList list;
        for (QByteArrayView extension : kPictureExtensions)
            list << QString::fromLatin1(extension);
        return list;
    }();
    return extensions;
}

bool FileSystemService::isPictureName(const QString& fileName)
{
    return hasPictureSuffix(platform::FileNameCodec::encode(fileName));
}

QStringList FileSystemService::loadImageFiles(const QString& folder) const
{
    return joinedWith(folder, loadImageFileNames(folder));
}

QStringList FileSystemService::loadImageFileNames(const QString& folder) const
{
    Log::line(kTag, QStringLiteral("开始加载文件夹: ") + folder);
    if (!FolderAccessToken::startAccess(folder))
        Log::line(kTag, QStringLiteral("无法访问文件夹，可能需要权限"));
    QString error;
    const auto contents = FolderContents::read(folder, &error);
    FolderAccessToken::stopAccess(folder);
    if (!contents) {
        Log::line(kTag, QStringLiteral("加载图像文件失败: ") + error);
        return {};
    }
    Log::line(kTag, QStringLiteral("文件夹中共有 %1 个项目").arg(contents->entryCount));
    Log::line(kTag, QStringLiteral("过滤后找到 %1 个图像文件").arg(contents->pictures.size()));
    return contents->pictures;
}

// Here rather than in a file of its own: it shares the listing rules (suffixes, order) of this file.
std::optional<FolderContents> FolderContents::read(const QString& folder, QString* error)
{
    const auto entries = DirectoryLister::listVisible(folder, error);
    if (!entries)
        return std::nullopt;
    std::vector<QByteArray> pictures;
    std::vector<QByteArray> folders;
    for (const DirectoryEntry& entry : *entries) {
        if (entry.kind == DirectoryEntry::Kind::file && hasPictureSuffix(entry.nativeName))
            pictures.push_back(entry.nativeName);
        else if (entry.kind == DirectoryEntry::Kind::directory)
            folders.push_back(entry.nativeName);
    }
    return FolderContents{sortedNames(pictures), joinedWith(folder, sortedNames(folders)), qsizetype(entries->size())};
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
    const QStringList shortNames = sortedNames(names);
    const QStringList paths = joinedWith(parent, shortNames);
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
