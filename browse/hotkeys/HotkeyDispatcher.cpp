// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/HotkeyDispatcher.h"

#include "browse/hotkeys/BrowseChrome.h"
#include "browse/hotkeys/ColorAnnotationService.h"
#include "browse/hotkeys/FolderNavigator.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "browse/marks/PictureRater.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailReloadService.h"
#include "browse/trash/FileDeleteService.h"
#include "platform/ImageRotator.h"
#include "platform/Log.h"
#include "platform/XattrTagStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QPointer>
#include <QThreadPool>

namespace lumaro::browse {

using platform::Log;

namespace {

const QString kTag = QStringLiteral("HotkeyDispatcher");

void say(const QString& message)
{
    Log::line(kTag, message);
}

} // namespace

HotkeyDispatcher::HotkeyDispatcher(LMRModeState& state, HotkeyManager& manager, BrowseChrome* chrome,
                                   Services services, QObject* parent)
    : QObject(parent), m_state(state), m_manager(manager), m_chrome(chrome),
      m_deleteService(services.deleteService ? *services.deleteService : FileDeleteService::shared()),
      m_tags(services.tags ? *services.tags : platform::XattrTagStore::shared()),
      m_cache(services.cache ? *services.cache : ThumbnailCache::shared()),
      m_reload(services.reload ? *services.reload : ThumbnailReloadService::shared()),
      m_navigator(services.navigator), m_annotations(std::make_unique<ColorAnnotationService>(m_tags)),
      m_loader(services.loader),
      m_rotate(services.rotate ? services.rotate : RotateFunction(&platform::ImageRotator::rotateLeft)),
      m_clock(services.clock ? services.clock : platform::systemClock()),
      m_rater(services.rater ? *services.rater : PictureRater::shared())
{
    if (!m_navigator) {
        m_ownNavigator = std::make_unique<FolderNavigator>(m_state);
        m_navigator = m_ownNavigator.get();
    }
}

HotkeyDispatcher::~HotkeyDispatcher() = default;

bool HotkeyDispatcher::handleKey(int qtKey, Qt::KeyboardModifiers modifiers, bool isAutoRepeat)
{
    const auto action = m_manager.actionForKey(qtKey, modifiers);
    if (!action)
        return false;
    if (isAutoRepeat && !repeatsWhileHeld(*action))
        return true; // held down: the press already did it once
    if (*action == HotkeyAction::deleteFile) {
        // A doubled press (a bouncing key, a nervous finger) must not take the picture that slid into place
        // too.
        const double now = m_clock();
        if (now - m_lastDeletePress < deletePressGuardSeconds) {
            say(QStringLiteral("删除键连按过快，忽略本次删除请求"));
            return true;
        }
        m_lastDeletePress = now;
    }
    perform(*action);
    return true;
}

void HotkeyDispatcher::perform(HotkeyAction action)
{
    switch (action) {
    case HotkeyAction::navigatePrevious:
        return navigateBy(-1, int(NavigationDirection::previous));
    case HotkeyAction::navigateNext:
        return navigateBy(1, int(NavigationDirection::next));
    case HotkeyAction::navigateUp:
        return navigateBy(-m_state.imagesPerRow(), int(NavigationDirection::up));
    case HotkeyAction::navigateDown:
        return navigateBy(m_state.imagesPerRow(), int(NavigationDirection::down));
    case HotkeyAction::navigateFolderNext:
        return moveFolder(1);
    case HotkeyAction::navigateFolderPrevious:
        return moveFolder(-1);
    case HotkeyAction::annotateRed:
    case HotkeyAction::annotateYellow:
    case HotkeyAction::annotateOrange:
    case HotkeyAction::annotateGreen:
    case HotkeyAction::annotateBlue:
    case HotkeyAction::annotatePurple:
        return annotate(action);
    case HotkeyAction::deleteFile:
        return deleteSelected();
    case HotkeyAction::restoreFile:
        return restoreNewest();
    case HotkeyAction::rotateLeft:
        return rotateSelected();
    case HotkeyAction::toggleFullScreen:
        return toggleFullScreen();
    case HotkeyAction::toggleDirPanel:
        return toggleDirPanel();
    }
}

std::optional<HotkeyDispatcher::SelectedFile> HotkeyDispatcher::selectedFile() const
{
    const auto index = m_state.selectedImageIndex();
    if (!index) {
        say(QStringLiteral("没有选中的图像索引"));
        return std::nullopt;
    }
    const int count = int(m_state.imageFiles().size());
    if (*index < 0 || *index >= count) {
        say(QStringLiteral("选中的索引超出范围: %1, 总图像数: %2").arg(*index).arg(count));
        return std::nullopt;
    }
    const auto folder = m_state.currentFolder();
    if (!folder) {
        say(QStringLiteral("没有文件夹路径"));
        return std::nullopt;
    }
    return SelectedFile{*index, m_state.imageFiles().at(*index), *folder};
}

void HotkeyDispatcher::navigateBy(int step, int direction)
{
    const auto index = m_state.selectedImageIndex();
    if (!index) {
        say(QStringLiteral("没有选中的图像索引"));
        return;
    }
    const int target = *index + step;
    if (target < 0 || target >= m_state.imageFiles().size())
        return; // at the edge: stay
    m_state.lastNavigationDirection = NavigationDirection(direction);
    m_state.select(target);
}

void HotkeyDispatcher::moveFolder(int step)
{
    m_state.lastNavigationDirection =
        step > 0 ? NavigationDirection::folderNext : NavigationDirection::folderPrevious;
    if (!m_state.currentFolder() || !m_navigator->move(step).isEmpty())
        return;
    tellUser(step > 0 ? QStringLiteral("已经是最后一个文件夹") : QStringLiteral("已经是第一个文件夹"));
}

void HotkeyDispatcher::annotate(HotkeyAction action)
{
    const auto file = selectedFile();
    const auto color = colorName(action);
    if (!file || !color)
        return;
    if (!m_annotations->toggle(m_state, file->folder, file->name, *color))
        tellUser(QStringLiteral("无法写入标签：“%1”（文件只读，或所在磁盘不支持标签）").arg(file->name));
}

void HotkeyDispatcher::rate(const RatingChange& change)
{
    using Kind = RatingChange::Kind;
    if (change.kind == Kind::togglePick || change.kind == Kind::toggleReject) {
        const double now = m_clock();
        if (now - m_lastTogglePress < deletePressGuardSeconds) {
            say(QStringLiteral("标记键连按过快，忽略本次请求"));
            return;
        }
        m_lastTogglePress = now;
    }
    const auto file = selectedFile();
    if (!file)
        return;
    QString error;
    const auto marks = m_rater.apply(QDir(file->folder).filePath(file->name), change, &error);
    if (!marks) {
        say(QStringLiteral("写入评级失败: %1 (%2)").arg(file->name, error));
        tellUser(QStringLiteral("无法写入评级：“%1”（%2）").arg(file->name, error));
        return;
    }
    say(QStringLiteral("评级: %1 -> %2 星%3")
            .arg(file->name)
            .arg(marks->stars)
            .arg(marks->flag == platform::PickFlag::picked     ? QStringLiteral(", 精选")
                 : marks->flag == platform::PickFlag::rejected ? QStringLiteral(", 废片")
                                                               : QString()));
    m_state.setRating(file->name, *marks);
}

void HotkeyDispatcher::tellUser(const QString& message)
{
    if (m_chrome)
        m_chrome->showMessage(message);
}

void HotkeyDispatcher::toggleFullScreen()
{
    say(QStringLiteral("切换全屏"));
    if (m_chrome)
        m_chrome->toggleFullScreen();
}

void HotkeyDispatcher::toggleDirPanel()
{
    say(QStringLiteral("切换文件夹面板"));
    if (m_chrome)
        m_chrome->toggleFolderPanel();
}

void HotkeyDispatcher::runInBackground(std::function<std::function<void()>()> work)
{
    ++m_pendingTasks;
    QPointer<HotkeyDispatcher> self(this);
    QThreadPool::globalInstance()->start([self, work = std::move(work)] {
        std::function<void()> done = work();
        // Posted to the application object, which outlives every dispatcher; the guard is read on the main
        // thread.
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, done = std::move(done)] {
                if (!self)
                    return;
                --self->m_pendingTasks;
                done();
            },
            Qt::QueuedConnection);
    });
}

} // namespace lumaro::browse
