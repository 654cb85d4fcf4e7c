// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardScanner.h"

#include "platform/FolderFiles.h"
#include "platform/Log.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace lumaro::cards {

using platform::Log;

MediaKind CardScanner::kindOf(const QString& fileName)
{
    static const QSet<QString> raw{QStringLiteral("cr3"), QStringLiteral("cr2"), QStringLiteral("crw"),
                                   QStringLiteral("nef"), QStringLiteral("raf"), QStringLiteral("orf"),
                                   QStringLiteral("arw"), QStringLiteral("rw2"), QStringLiteral("dng")};
    static const QSet<QString> video{QStringLiteral("mp4"), QStringLiteral("mov"), QStringLiteral("avi"),
                                     QStringLiteral("m4v"), QStringLiteral("mkv")};
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return MediaKind::other;
    const QString extension = fileName.mid(dot + 1).toLower();
    if (extension == QLatin1String("jpg") || extension == QLatin1String("jpeg"))
        return MediaKind::jpg;
    if (raw.contains(extension))
        return MediaKind::raw;
    if (video.contains(extension))
        return MediaKind::video;
    return MediaKind::other;
}

bool CardScanner::isHiddenOrSystem(const QString& entryName)
{
    // A leading dot covers the trash folders of both desktops, Spotlight's and fseventsd's stores and the
    // "._" resource forks macOS writes beside every file. FAT compares names without case, so Windows' folder
    // may come back in any case.
    return entryName.startsWith(QLatin1Char('.')) ||
           entryName.compare(QLatin1String("System Volume Information"), Qt::CaseInsensitive) == 0 ||
           entryName.compare(QLatin1String("$RECYCLE.BIN"), Qt::CaseInsensitive) == 0;
}

NewFileInfo CardScanner::scan(const QString& mountPath)
{
    NewFileInfo found;
    const QFileInfo root(mountPath);
    if (!root.isDir() || !root.isReadable()) {
        Log::raw(QStringLiteral("⚠️ 无法创建文件枚举器: ") + mountPath);
        return found;
    }
    const QDir rootDir(mountPath);
    QStringList all;
    QStringList folders{QDir::cleanPath(mountPath)};
    while (!folders.isEmpty()) {
        const QString folder = folders.takeLast();
        // By the names' bytes: a file named in another encoding is imported like any other, never passed by.
        QString error;
        const auto entries = platform::FolderFiles::entries(folder, &error);
        if (!entries) {
            Log::raw(QStringLiteral("⚠️ 无法读取文件夹: ") + folder + QStringLiteral(" (") + error + QStringLiteral(")"));
            continue;
        }
        for (const platform::FolderEntry& entry : *entries) {
            const QString path = folder + QLatin1Char('/') + entry.name;
            if (isHiddenOrSystem(entry.name)) {
                found.skippedEntries.append(rootDir.relativeFilePath(path));
                continue;
            }
            if (entry.kind == platform::FolderEntry::Kind::folder) {
                folders.append(path);
                continue;
            }
            if (entry.kind != platform::FolderEntry::Kind::file)
                continue;
            QStringList* list = nullptr;
            switch (kindOf(entry.name)) {
            case MediaKind::jpg:
                list = &found.jpgFiles;
                break;
            case MediaKind::raw:
                list = &found.rawFiles;
                break;
            case MediaKind::video:
                list = &found.videoFiles;
                break;
            case MediaKind::other:
                break;
            }
            if (!list)
                continue;
            list->append(path);
            all.append(path);
            found.totalSize += entry.size;
            found.stamps.insert(path, {entry.size, entry.modifiedMs});
        }
    }
    found.skippedEntries.sort();
    for (const QString& entry : std::as_const(found.skippedEntries))
        Log::raw(QStringLiteral("⚠️ 跳过隐藏或系统项: ") + entry);
    // Directory order differs between file systems; sorted, an import copies cards in the camera's own order.
    found.jpgFiles.sort();
    found.rawFiles.sort();
    found.videoFiles.sort();
    all.sort();
    Log::raw(QStringLiteral("📋 扫描到的媒体文件："));
    for (const QString& path : all)
        Log::raw(QStringLiteral("   ") + path);
    Log::raw(QStringLiteral("📋 文件分类结果："));
    Log::raw(QStringLiteral("   - JPG文件: ") + QString::number(found.jpgFiles.size()));
    Log::raw(QStringLiteral("   - RAW文件: ") + QString::number(found.rawFiles.size()));
    Log::raw(QStringLiteral("   - 视频文件: ") + QString::number(found.videoFiles.size()));
    Log::raw(QStringLiteral("   - 视频文件列表:"));
    for (const QString& path : found.videoFiles)
        Log::raw(QStringLiteral("     ") + QFileInfo(path).fileName());
    return found;
}

} // namespace lumaro::cards
