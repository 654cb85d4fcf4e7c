// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/FileSystemService.h"

#include "browse/state/FolderContents.h"
#include "browse/state/PictureFolderListing.h"

#include "platform/files/FileNameCodec.h"

#include "platform/FolderAccessToken.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstring>

namespace lumaro::browse {

using platform::FolderAccessToken;
using platform::Log;

namespace {

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

const QString kTag = text(FolderListingLog::tag);

QStringList joinedWith(const QString& folder, const QStringList& names)
{
    const QString prefix = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    QStringList paths;
    paths.reserve(names.size());
    for (const QString& name : names)
        paths << prefix + name;
    return paths;
}

QStringList decodedNames(const std::vector<std::string>& names)
{
    QStringList decoded;
    decoded.reserve(qsizetype(names.size()));
    for (const std::string& name : names)
        decoded << platform::FileNameCodec::decode(QByteArray::fromStdString(name));
    return decoded;
}

// The folder's listing by the shared rules, or nullopt with `error` set when it cannot be read.
std::optional<PictureFolderListing> listed(const QString& folder, QString* error)
{
    int errorNumber = 0;
    auto listing =
        PictureFolderListing::read(platform::FileNameCodec::encode(folder).constData(), &errorNumber);
    if (!listing && error)
        *error = QString::fromLocal8Bit(std::strerror(errorNumber));
    return listing;
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
        for (std::string_view extension : PictureFolderListing::extensions)
            list << text(extension);
        return list;
    }();
    return extensions;
}

bool FileSystemService::isPictureName(const QString& fileName)
{
    return PictureFolderListing::isPictureName(platform::FileNameCodec::encode(fileName).toStdString());
}

QStringList FileSystemService::loadImageFiles(const QString& folder) const
{
    return joinedWith(folder, loadImageFileNames(folder));
}

QStringList FileSystemService::loadImageFileNames(const QString& folder) const
{
    Log::line(kTag, text(FolderListingLog::loading) + folder);
    if (!FolderAccessToken::startAccess(folder))
        Log::line(kTag, QStringLiteral("无法访问文件夹，可能需要权限"));
    QString error;
    const auto contents = FolderContents::read(folder, &error);
    FolderAccessToken::stopAccess(folder);
    if (!contents) {
        Log::line(kTag, QStringLiteral("加载图像文件失败: ") + error);
        return {};
    }
    Log::line(kTag, text(FolderListingLog::entriesBefore) + QString::number(contents->entryCount) +
                        text(FolderListingLog::entriesAfter));
    Log::line(kTag, text(FolderListingLog::picturesBefore) + QString::number(contents->pictures.size()) +
                        text(FolderListingLog::picturesAfter));
    return contents->pictures;
}

// Here rather than in a file of its own: it shares the listing rules (suffixes, order) of this file.
std::optional<FolderContents> FolderContents::read(const QString& folder, QString* error)
{
    const auto listing = listed(folder, error);
    if (!listing)
        return std::nullopt;
    return FolderContents{decodedNames(listing->pictures), joinedWith(folder, decodedNames(listing->folders)),
                          qsizetype(listing->entryCount)};
}

QStringList FileSystemService::loadImageFiles(const QByteArray& folderToken,
                                              const QString& fallbackPath) const
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
    const auto listing = listed(parent, &error);
    if (!listing) {
        Log::line(kTag, QStringLiteral("获取子文件夹列表失败: ") + error);
        return {};
    }
    Log::line(kTag, QStringLiteral("父目录中共有 %1 个项目").arg(listing->entryCount));
    const QStringList shortNames = decodedNames(listing->folders);
    const QStringList paths = joinedWith(parent, shortNames);
    Log::line(kTag, QStringLiteral("找到 %1 个子文件夹: ").arg(paths.size()) +
                        shortNames.join(QStringLiteral(", ")));
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
    Log::line(kTag, QStringLiteral("路径组件: ") +
                        resolved.split(QLatin1Char('/'), Qt::SkipEmptyParts).join(QStringLiteral(", ")));
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
