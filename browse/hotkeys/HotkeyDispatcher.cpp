// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/HotkeyDispatcher.h"

#include "browse/hotkeys/BrowseChrome.h"
#include "browse/hotkeys/ColorAnnotationService.h"
#include "browse/hotkeys/FolderNavigator.h"
#include "browse/hotkeys/HotkeyManager.h"
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
    : QObject(parent)
    , m_state(state)
    , m_manager(manager)
    , m_chrome(chrome)
    , m_deleteService(services.deleteService ? *services.deleteService : FileDeleteService::shared())
    , m_tags(services.tags ? *services.tags : platform::XattrTagStore::shared())
    , m_cache(services.cache ? *services.cache : ThumbnailCache::shared())
    , m_reload(services.reload ? *services.reload : ThumbnailReloadService::shared())
    , m_navigator(services.navigator)
    , m_annotations(std::make_unique<ColorAnnotationService>(m_tags))
    , m_rotate(services.rotate ? services.rotate : RotateFunction(&platform::ImageRotator::rotateLeft))
{
    if (!m_navigator) {
        m_ownNavigator = std::make_unique<FolderNavigator>(m_state);
        m_navigator = m_ownNavigator.get();
    }
}

HotkeyDispatcher::~HotkeyDispatcher() = default;

bool HotkeyDispatcher::handleKey(int qtKey, Qt::KeyboardModifiers modifiers)
{
    const auto action = m_manager.actionForKey(qtKey, modifiers);
    if (!action)
        return false;
    perform(*action);
    return true;
}

void HotkeyDispatcher::perform(HotkeyAction action)
{
    switch (action) {
    case HotkeyAction::navigatePrevious: return navigateBy(-1, int(NavigationDirection::previous));
    case HotkeyAction::navigateNext: return navigateBy(1, int(NavigationDirection::next));
    case HotkeyAction::navigateUp: return navigateBy(-m_state.imagesPerRow(), int(NavigationDirection::up));
    case HotkeyAction::navigateDown: return navigateBy(m_state.imagesPerRow(), int(NavigationDirection::down));
    case HotkeyAction::navigateFolderNext:
        m_state.lastNavigationDirection = NavigationDirection::folderNext;
        m_navigator->move(1);
        return;
    case HotkeyAction::navigateFolderPrevious:
        m_state.lastNavigationDirection = NavigationDirection::folderPrevious;
        m_navigator->move(-1);
        return;
    case HotkeyAction::annotateRed:
    case HotkeyAction::annotateYellow:
    case HotkeyAction::annotateOrange:
    case HotkeyAction::annotateGreen:
    case HotkeyAction::annotateBlue:
    case HotkeyAction::annotatePurple: return annotate(action);
    case HotkeyAction::deleteFile: return deleteSelected();
    case HotkeyAction::restoreFile: return restoreNewest();
    case HotkeyAction::rotateLeft: return rotateSelected();
    case HotkeyAction::toggleFullScreen: return toggleFullScreen();
    case HotkeyAction::toggleDirPanel: return toggleDirPanel();
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

void HotkeyDispatcher::annotate(HotkeyAction action)
{
    const auto file = selectedFile();
    const auto color = colorName(action);
    if (!file || !color)
        return;
    m_annotations->toggle(m_state, file->folder, file->name, *color);
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
        // Posted to the application object, which outlives every dispatcher; the guard is read on the main thread.
        QMetaObject::invokeMethod(QCoreApplication::instance(), [self, done = std::move(done)] {
            if (!self)
                return;
            --self->m_pendingTasks;
            done();
        }, Qt::QueuedConnection);
    });
}

} // namespace lumaro::browse
