// SPDX-License-Identifier: GPL-3.0-or-later
// The dispatcher's actions that change files on disk: delete to the Trash, restore, rotate.
#include "browse/hotkeys/HotkeyDispatcher.h"

#include "browse/hotkeys/BrowseChrome.h"
#include "browse/hotkeys/ColorAnnotationService.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailLoader.h"
#include "browse/thumbnails/ThumbnailReloadService.h"
#include "browse/trash/FileDeleteService.h"
#include "platform/FileTagStore.h"
#include "platform/ImageRotator.h"
#include "platform/Log.h"
#include "platform/metadata/XmpSidecar.h"
#include "platform/text/ChineseErrorText.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

namespace lumaro::browse {

using platform::Log;

namespace {

const QString kTag = QStringLiteral("HotkeyDispatcher");

void say(const QString& message)
{
    Log::line(kTag, message);
}

qint64 nowNs()
{
    static QElapsedTimer clock = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    return clock.nsecsElapsed();
}

QString secs(qint64 ns)
{
    return QString::number(double(ns) / 1e9, 'f', 3);
}

bool sameFolder(const std::optional<QString>& a, const QString& b)
{
    return a && QDir::cleanPath(*a) == QDir::cleanPath(b);
}

} // namespace

void HotkeyDispatcher::deleteSelected()
{
    say(QStringLiteral("执行删除文件操作"));
    if (m_state.isDeleting) {
        say(QStringLiteral("删除操作进行中，忽略本次删除请求"));
        return;
    }
    const auto file = selectedFile();
    if (!file)
        return;
    say(QStringLiteral("准备删除文件: ") + file->name);
    const QString path = QDir(file->folder).filePath(file->name);
    const QStringList tags = m_tags.tags(path).value_or(QStringList());
    if (tags.isEmpty())
        say(QStringLiteral("文件没有标签"));
    else
        say(QStringLiteral("捕获删除前的标签: ") + tags.join(QStringLiteral(", ")));

    m_state.isDeleting = true;
    m_state.notify();
    const qint64 start = nowNs();
    const auto bookmark = m_state.folderBookmarkData();
    FileDeleteService* service = &m_deleteService;
    const SelectedFile selected = *file;
    runInBackground([this, service, selected, bookmark, tags, start]() -> std::function<void()> {
        const qint64 ioStart = nowNs();
        const TrashOutcome outcome = service->moveToTrash(selected.name, selected.folder, bookmark);
        const qint64 ioNs = nowNs() - ioStart;
        Log::raw(QStringLiteral("PERF-DELETE(IO)-HK: %1 s").arg(secs(ioNs)));
        return [this, selected, tags, outcome, start, ioStart, ioNs] {
            finishDelete(selected, tags, outcome.trashFilePath, outcome.error, start, ioStart - start, ioNs);
        };
    });
}

void HotkeyDispatcher::finishDelete(const SelectedFile& file, const QStringList& tags,
                                    const std::optional<QString>& trashPath, const QString& error,
                                    qint64 startNs, qint64 toIoNs, qint64 ioNs)
{
    const qint64 mainStart = nowNs();
    if (!trashPath) {
        say(QStringLiteral("文件删除失败: ") + error);
        m_state.isDeleting = false;
        m_state.notify();
        const QString message =
            QStringLiteral("无法将“%1”移到废纸篓（%2）").arg(file.name, platform::chineseErrorText(error)) +
            QStringLiteral("，文件可能被其他程序占用或权限不足");
        if (m_chrome)
            m_chrome->showAlert(QStringLiteral("删除失败"), message);
        Q_EMIT deleteFinished(false);
        return;
    }
    // The list may have changed while the file was moved (another folder opened, a reload): find it by name.
    int at = -1;
    if (sameFolder(m_state.currentFolder(), file.folder)) {
        const QStringList& files = m_state.imageFiles();
        at = file.index < files.size() && files.at(file.index) == file.name ? file.index
                                                                            : int(files.indexOf(file.name));
    }
    DeletedFileInfo info;
    info.fileName = file.name;
    info.originalIndex = at >= 0 ? at : file.index;
    info.folderPath = file.folder;
    info.folderBookmarkData = m_state.folderBookmarkData();
    info.deletedAt = QDateTime::currentDateTime();
    info.trashFileURL = trashPath;
    info.originalTags = tags;
    if (m_state.pictureFilter().isActive() && at >= 0)
        info.folderIndex = int(m_state.folderFiles().indexOf(file.name));

    const qint64 historyStart = nowNs();
    m_state.addDeletedFile(info);
    const qint64 historyNs = nowNs() - historyStart;

    const qint64 removeStart = nowNs();
    if (at >= 0)
        m_state.removeFile(at);
    m_cache.clearFile(QDir(file.folder).filePath(file.name));
    const qint64 removeNs = nowNs() - removeStart;
    const qint64 ioToRemoveNs = removeStart - (startNs + toIoNs + ioNs);

    m_state.isDeleteIndicatorVisible = true;
    m_state.deleteIndicatorOpacity = 1.0;
    m_state.isDeleting = false;
    m_state.notify();
    const qint64 end = nowNs();
    Log::raw(QStringLiteral("PERF-DELETE(MAIN)-HK: 启动到IO=%1, IO=%2, IO到移除=%3, 写历史=%4, 列表移除=%5, "
                            "主线程段=%6, 总=%7 s")
                 .arg(secs(toIoNs), secs(ioNs), secs(ioToRemoveNs), secs(historyNs), secs(removeNs),
                      secs(end - mainStart), secs(end - startNs)));
    say(QStringLiteral("删除操作完成"));
    Q_EMIT deleteFinished(true);
}

void HotkeyDispatcher::restoreNewest()
{
    say(QStringLiteral("执行恢复文件操作"));
    if (m_isRestoring) {
        say(QStringLiteral("恢复操作进行中，忽略本次恢复请求"));
        return;
    }
    // A record found to be beyond return on an earlier press is dropped now, so the older ones stay
    // reachable.
    while (!m_state.deletedFilesHistory().isEmpty() &&
           m_lostRecords.contains(m_state.deletedFilesHistory().constFirst())) {
        const DeletedFileInfo lost = m_state.deletedFilesHistory().constFirst();
        m_lostRecords.removeAll(lost);
        say(QStringLiteral("跳过无法恢复的记录: ") + lost.fileName);
        m_state.removeDeletedRecord(lost);
    }
    if (m_state.deletedFilesHistory().isEmpty()) {
        say(QStringLiteral("没有可恢复的删除文件"));
        tellUser(QStringLiteral("没有可恢复的删除文件"));
        return;
    }
    const DeletedFileInfo info = m_state.deletedFilesHistory().constFirst();
    say(QStringLiteral("准备恢复文件: ") + info.fileName);
    m_isRestoring = true;
    FileDeleteService* service = &m_deleteService;
    runInBackground([this, service, info]() -> std::function<void()> {
        const bool ok = service->restoreFile(info);
        const bool lost = !ok && !service->canStillRestore(info);
        // Its stars came back with its sidecar: read them, so the list, the tiles and a filter see them.
        const auto marks =
            ok ? platform::XmpSidecar::read(QDir(info.folderPath).filePath(info.fileName)) : std::nullopt;
        return [this, info, ok, lost, marks] {
            finishRestore(info, ok, lost, marks.value_or(platform::PictureMarks()));
        };
    });
}

void HotkeyDispatcher::finishRestore(const DeletedFileInfo& info, bool ok, bool lost,
                                     const platform::PictureMarks& marks)
{
    m_isRestoring = false;
    if (!ok) {
        say(QStringLiteral("文件恢复失败: ") + info.fileName);
        if (lost && !m_lostRecords.contains(info)) {
            // Kept for now (a failed restore changes nothing); the next restore skips it.
            m_lostRecords << info;
            say(QStringLiteral("此记录已无法恢复，再次恢复将跳过: ") + info.fileName);
        }
        if (lost)
            tellUser(
                QStringLiteral("无法恢复“%1”：废纸篓中已找不到它，再按一次恢复将跳过它").arg(info.fileName));
        else
            tellUser(QStringLiteral("无法恢复“%1”：废纸篓中已找不到它，或原文件夹已有同名文件")
                         .arg(info.fileName));
        Q_EMIT restoreFinished(false);
        return;
    }
    say(QStringLiteral("文件恢复成功: ") + info.fileName);
    const bool shown = sameFolder(m_state.currentFolder(), info.folderPath);
    if (shown) {
        // Its marks first, so that a filter judges the picture as it comes back.
        m_state.setRating(info.fileName, marks);
        ColorAnnotationService::applyToState(m_state, info.fileName, info.originalTags);
        m_state.restoreFile(info);
        if (!m_state.imageFiles().contains(info.fileName))
            tellUser(QStringLiteral("已恢复“%1”，当前筛选下不显示").arg(info.fileName));
    } else {
        m_state.removeDeletedRecord(info); // back in its own folder, which is not the one shown
    }
    m_state.isRestoreIndicatorVisible = true;
    m_state.restoreIndicatorOpacity = 1.0;
    m_state.isRestoreCountVisible = true;
    m_state.notify();

    const QString path = QDir(info.folderPath).filePath(info.fileName);
    say(QStringLiteral("准备恢复标签: ") + info.fileName);
    if (info.originalTags.isEmpty()) {
        say(QStringLiteral("没有保存的标签，跳过标签恢复"));
    } else {
        say(QStringLiteral("恢复标签到文件: ") + path);
        QString error;
        if (m_tags.setTags(path, info.originalTags, &error))
            say(QStringLiteral("标签恢复完成"));
        else
            say(QStringLiteral("标签恢复失败: ") + error);
    }
    say(QStringLiteral("恢复操作完成"));
    Q_EMIT restoreFinished(true);
}

void HotkeyDispatcher::rotateSelected()
{
    say(QStringLiteral("执行图像左旋转操作"));
    const auto file = selectedFile();
    if (!file)
        return;
    if (m_isRotating) {
        m_queuedRotations << *file;
        return;
    }
    startRotation(*file);
}

void HotkeyDispatcher::startRotation(const SelectedFile& selected)
{
    say(QStringLiteral("准备旋转图像: ") + selected.name);
    m_isRotating = true;
    const RotateFunction rotate = m_rotate;
    runInBackground([this, selected, rotate]() -> std::function<void()> {
        const platform::RotationOutcome outcome = rotate(QDir(selected.folder).filePath(selected.name));
        return [this, selected, outcome] { finishRotate(selected, outcome); };
    });
}

void HotkeyDispatcher::finishRotate(const SelectedFile& file, const platform::RotationOutcome& outcome)
{
    using Status = platform::RotationOutcome::Status;
    m_isRotating = false;
    if (!m_queuedRotations.isEmpty()) {
        // Started before this one's result is shown, so isBusy() stays true until the queue is empty.
        startRotation(m_queuedRotations.takeFirst());
    }
    const QString path = QDir(file.folder).filePath(file.name);
    const bool shown = sameFolder(m_state.currentFolder(), file.folder);
    switch (outcome.status) {
    case Status::unsupportedFormat:
        say(QStringLiteral("不支持的图像格式: ") + file.name);
        m_state.rotateErrorMessage = QStringLiteral("不支持的图像格式: ") + QFileInfo(file.name).suffix();
        m_state.isRotateErrorVisible = true;
        m_state.notify();
        Q_EMIT rotateFinished(false);
        return;
    case Status::failed:
        say(QStringLiteral("图像旋转失败: ") + outcome.error);
        m_state.rotateErrorMessage = platform::chineseErrorText(outcome.error);
        m_state.isRotateErrorVisible = true;
        m_state.notify();
        Q_EMIT rotateFinished(false);
        return;
    case Status::needsDisplayRotation:
        if (shown) {
            // Degrees clockwise, as the views turn the picture; a left turn is three quarters clockwise.
            m_state.setRotationOverride(file.name, m_state.rotationOverrides().value(file.name, 0) + 270);
        }
        say(QStringLiteral("已对RAW文件应用显示旋转覆盖: ") + file.name);
        break;
    case Status::rotated:
        say(QStringLiteral("图像旋转成功: ") + file.name);
        break;
    }
    m_cache.clearFile(path);
    if (m_loader)
        m_loader->invalidate(path);
    say(QStringLiteral("已清除文件缓存: ") + path);
    m_reload.requestReload(path);
    say(QStringLiteral("已请求缩略图重载(去重): ") + path);
    m_state.isRotateIndicatorVisible = true;
    m_state.rotateIndicatorOpacity = 1.0;
    m_state.isRotateErrorVisible = false;
    m_state.rotateErrorMessage.reset();
    m_state.notify();
    say(QStringLiteral("旋转操作完成"));
    Q_EMIT rotateFinished(true);
}

} // namespace lumaro::browse
