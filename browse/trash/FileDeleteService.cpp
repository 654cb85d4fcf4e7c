// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/trash/FileDeleteService.h"

#include "browse/trash/DeleteLogText.h"

#include "platform/FolderAccessToken.h"
#include "platform/FreedesktopTrash.h"
#include "platform/Log.h"
#include "platform/files/FileNameCodec.h"
#include "platform/metadata/XmpSidecar.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

namespace lumaro::browse {

using platform::Log;

namespace {

const QString kTag = QString::fromUtf8(DeleteLogText::tag);

QString text(std::string_view words)
{
    return QString::fromUtf8(words.data(), qsizetype(words.size()));
}

void say(const QString& message)
{
    Log::line(kTag, message);
}

void perf(std::string_view step, const QElapsedTimer& timer)
{
    Log::raw(text(DeleteLogText::perfPrefix) + text(step) + QLatin1Char('=') +
             QString::number(double(timer.nsecsElapsed()) / 1e9, 'f', 3) + QStringLiteral(" s"));
}

bool isPlainName(const QString& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && name != QStringLiteral(".")
        && name != QStringLiteral("..");
}

bool itemExists(const QString& path)
{
    return platform::FileNameCodec::exists(path);
}

// Brackets file work on a folder with start/stop of its access, whatever the outcome.
class FolderAccess
{
public:
    explicit FolderAccess(QString folder)
        : m_folder(std::move(folder))
    {
        if (!platform::FolderAccessToken::startAccess(m_folder))
            say(QStringLiteral("无法访问文件夹，可能需要权限"));
    }
    ~FolderAccess() { platform::FolderAccessToken::stopAccess(m_folder); }
    FolderAccess(const FolderAccess&) = delete;
    FolderAccess& operator=(const FolderAccess&) = delete;

private:
    QString m_folder;
};

} // namespace

FileDeleteService& FileDeleteService::shared()
{
    static FileDeleteService service;
    return service;
}

FileDeleteService::FileDeleteService()
    : FileDeleteService(Options{})
{
}

FileDeleteService::FileDeleteService(Options options)
    : m_options(std::move(options))
    , m_trash(m_options.trash ? *m_options.trash : platform::FreedesktopTrash::shared())
    , m_restorer(m_options.rename, m_options.volumes)
{
}

QString FileDeleteService::resolveFolder(const QString& folderPath, const std::optional<QByteArray>& bookmark)
{
    if (!bookmark)
        return folderPath;
    QString error;
    const auto resolved = platform::FolderAccessToken::resolve(*bookmark, &error);
    if (!resolved) {
        say(QStringLiteral("解析书签数据失败: ") + error);
        return folderPath;
    }
    // The token is the granted folder's; in deep mode the picture is listed from a folder below it. The file
    // is always in the folder it is listed from: the token only vouches for access to it.
    const QString granted = QDir::cleanPath(resolved->path);
    const QString folder = QDir::cleanPath(folderPath);
    if (folder != granted && !folder.startsWith(granted + QLatin1Char('/')) &&
        granted != QStringLiteral("/")) {
        say(QStringLiteral("书签数据不属于此文件夹，使用文件夹路径: ") + folder);
        return folderPath;
    }
    say(QStringLiteral("使用书签数据解析文件夹URL成功"));
    return folderPath;
}

TrashOutcome FileDeleteService::moveToTrash(const QString& fileName, const QString& folderPath,
                                            const std::optional<QByteArray>& folderBookmarkData)
{
    QElapsedTimer total;
    total.start();
    QElapsedTimer step;
    step.start();
    const QString folder = resolveFolder(folderPath, folderBookmarkData);
    perf(DeleteLogText::stepBookmark, step);

    step.restart();
    FolderAccess access(folder);
    perf(DeleteLogText::stepScope, step);

    step.restart();
    TrashOutcome outcome;
    if (!isPlainName(fileName)) {
        outcome.error = QStringLiteral("不是文件名: ") + fileName;
    } else {
        const QString path = QDir(folder).filePath(fileName);
        const QStringList sidecars = platform::XmpSidecar::companionsOf(path);
        if (const auto item = m_trash.moveToTrash(path, &outcome.error)) {
            outcome.trashFilePath = item->trashedPath;
            say(text(DeleteLogText::trashed) + fileName);
            trashSidecars(sidecars);
        }
    }
    if (!outcome.ok())
        say(text(DeleteLogText::failure) + outcome.error);
    perf(DeleteLogText::stepTrash, step);
    perf(DeleteLogText::stepTotal, total);
    return outcome;
}

bool FileDeleteService::restoreFile(const DeletedFileInfo& info)
{
    platform::TrashRecords records;
    return restore(info, records);
}

QList<bool> FileDeleteService::restoreFiles(const QList<DeletedFileInfo>& infos)
{
    platform::TrashRecords records;
    QList<bool> results;
    results.reserve(infos.size());
    for (const DeletedFileInfo& info : infos)
        results << restore(info, records);
    return results;
}

bool FileDeleteService::canStillRestore(const DeletedFileInfo& info)
{
    if (!isPlainName(info.fileName))
        return false;
    const QString target =
        QDir(resolveFolder(info.folderPath, info.folderBookmarkData)).filePath(info.fileName);
    if (itemExists(target))
        return false;
    if (info.trashFileURL && itemExists(*info.trashFileURL) &&
        platform::TrashRestorer::isItemOf(*info.trashFileURL, target))
        return true;
    return !m_restorer.findByOriginalPath(target).isEmpty();
}

bool FileDeleteService::restore(const DeletedFileInfo& info, platform::TrashRecords& records)
{
    say(text(DeleteLogText::restoreStart) + info.fileName);
    say(text(DeleteLogText::restoreOriginalFolder) + info.folderPath);
    const QString folder = resolveFolder(info.folderPath, info.folderBookmarkData);
    if (info.folderBookmarkData)
        say(QStringLiteral("解析后的文件夹路径: ") + folder);
    if (!isPlainName(info.fileName)) {
        say(QStringLiteral("所有恢复方法都失败了"));
        return false;
    }
    const QString target = QDir(folder).filePath(info.fileName);
    say(text(DeleteLogText::restoreTargetFolder) + folder);
    say(text(DeleteLogText::restoreTargetFile) + target);
    FolderAccess access(folder);

    QString crossDeviceItem;
    bool restored = restoreFromSavedPath(info, target, &crossDeviceItem) ||
                    restoreByLookup(info.fileName, target, records, &crossDeviceItem);
    if (!restored && !crossDeviceItem.isEmpty())
        restored = restoreByCopy(crossDeviceItem, target);
    if (!restored && m_options.useGio && platform::TrashRestorer::isGioAvailable())
        restored = restoreWithGio(target);
    if (!restored) {
        say(QStringLiteral("所有恢复方法都失败了"));
        return false;
    }
    restoreSidecars(target, records);
    say(text(DeleteLogText::restoreFinished));
    return true;
}

void FileDeleteService::trashSidecars(const QStringList& sidecars)
{
    // The picture is in the Trash already: a sidecar that stays behind is logged, never a reason to undo it.
    for (const QString& sidecar : sidecars) {
        QString error;
        if (m_trash.moveToTrash(sidecar, &error))
            say(QStringLiteral("XMP附属文件已随图片移到废纸篓: ") + sidecar);
        else
            say(QStringLiteral("XMP附属文件未能移到废纸篓: %1 (%2)").arg(sidecar, error));
    }
}

void FileDeleteService::restoreSidecars(const QString& picture, platform::TrashRecords& records)
{
    const QString stem = platform::XmpSidecar::pathFor(picture, platform::SidecarNaming::stem).chopped(4);
    QStringList names{picture + QStringLiteral(".xmp"), picture + QStringLiteral(".XMP")};
    if (stem != picture)
        names << stem + QStringLiteral(".xmp") << stem + QStringLiteral(".XMP");
    for (const QString& sidecar : names) {
        if (itemExists(sidecar))
            continue; // never over a sidecar written since
        const auto items = m_restorer.findByOriginalPath(sidecar, &records);
        if (items.isEmpty())
            continue;
        const platform::RenameResult result = m_restorer.putBack(items.constFirst().trashedPath, sidecar);
        QString error = result.error;
        if (result.ok ||
            (result.crossDevice && m_restorer.copyBack(items.constFirst().trashedPath, sidecar, &error)))
            say(QStringLiteral("XMP附属文件已恢复: ") + sidecar);
        else
            say(QStringLiteral("XMP附属文件未能恢复: %1 (%2)").arg(sidecar, error));
    }
}

bool FileDeleteService::restoreFromSavedPath(const DeletedFileInfo& info, const QString& target,
                                             QString* crossDeviceItem)
{
    if (!info.trashFileURL) {
        say(text(DeleteLogText::restoreNoSavedItem));
        return false;
    }
    const QString saved = *info.trashFileURL;
    say(QStringLiteral("使用保存的废纸篓文件路径: ") + saved);
    say(QStringLiteral("使用保存的废纸篓路径恢复文件: ") + info.fileName);
    say(QStringLiteral("检查废纸篓文件是否存在: ") + saved);
    if (!itemExists(saved)) {
        say(QStringLiteral("废纸篓文件不存在: ") + saved);
        say(QStringLiteral("回退到系统API恢复方法"));
        return false;
    }
    // The Trash may have been emptied since and the name given to another folder's file: only the item whose
    // record names this very file is ours.
    if (!platform::TrashRestorer::isItemOf(saved, target)) {
        say(QStringLiteral("废纸篓文件来自其他位置，不使用: ") + saved);
        say(QStringLiteral("回退到系统API恢复方法"));
        return false;
    }
    const platform::RenameResult result = m_restorer.putBack(saved, target);
    if (result.ok) {
        say(text(DeleteLogText::restoreDone) + target);
        return true;
    }
    if (result.crossDevice)
        *crossDeviceItem = saved;
    say(QStringLiteral("恢复文件时发生错误: ") + info.fileName);
    say(QStringLiteral("错误详情: ") + result.error);
    return false;
}

bool FileDeleteService::restoreByLookup(const QString& fileName, const QString& target,
                                        platform::TrashRecords& records, QString* crossDeviceItem)
{
    say(text(DeleteLogText::restoreByLookup) + fileName);
    const QString homeTrash = platform::TrashDirectories::homeTrash();
    if (homeTrash.isEmpty())
        say(QStringLiteral("无法获取废纸篓URL"));
    say(text(DeleteLogText::restoreTrashPath) + homeTrash);
    say(text(DeleteLogText::restoreTargetDirectory) + QFileInfo(target).absolutePath());
    say(text(DeleteLogText::restoreFileName) + fileName);

    QStringList items;
    for (const platform::TrashEntry& entry : m_restorer.findByOriginalPath(target, &records))
        items << entry.trashedPath;
    if (items.isEmpty()) {
        say(QStringLiteral("废纸篓中找不到文件: ") + fileName);
        return false;
    }
    const platform::RenameResult result = m_restorer.putBack(items.constFirst(), target);
    if (result.ok) {
        say(text(DeleteLogText::restoreDone) + target);
        return true;
    }
    if (result.crossDevice && crossDeviceItem->isEmpty())
        *crossDeviceItem = items.constFirst();
    say(QStringLiteral("恢复文件时发生错误: ") + fileName);
    say(QStringLiteral("错误详情: ") + result.error);
    return false;
}

bool FileDeleteService::restoreByCopy(const QString& item, const QString& target)
{
    say(QStringLiteral("使用现代API恢复文件: ") + QFileInfo(target).fileName());
    say(QStringLiteral("尝试copy-then-move方法"));
    say(QStringLiteral("源文件URL: ") + item);
    say(QStringLiteral("目标目录URL: ") + QFileInfo(target).absolutePath());

    // Runs to the end on this (background) task: a copy that were given up on half-way would still finish and
    // take the item out of the Trash while the caller believed it failed.
    QString error;
    if (!m_restorer.copyBack(item, target, &error)) {
        say(QStringLiteral("copy失败: ") + error);
        say(QStringLiteral("移动文件失败: ") + error);
        return false;
    }
    say(QStringLiteral("copy成功，复制到: ") + target);
    say(QStringLiteral("成功移动文件到目标位置"));
    say(QStringLiteral("现代API恢复成功: ") + QFileInfo(target).fileName());
    return true;
}

bool FileDeleteService::restoreWithGio(const QString& target)
{
    say(QStringLiteral("尝试gio trash --restore方法"));
    say(QStringLiteral("使用gio恢复文件: ") + QFileInfo(target).fileName());
    QString error;
    const bool ok = platform::TrashRestorer::gioRestore(target, &error);
    say(QStringLiteral("gio结果: ") + (ok ? QStringLiteral("true") : QStringLiteral("false")));
    if (ok)
        say(QStringLiteral("gio恢复成功: ") + QFileInfo(target).fileName());
    else
        say(QStringLiteral("gio执行失败: ") + error);
    return ok;
}

} // namespace lumaro::browse
