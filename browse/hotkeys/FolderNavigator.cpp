// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/FolderNavigator.h"

#include "browse/state/FileSystemService.h"
#include "browse/state/FolderLoader.h"
#include "browse/state/LMRModeState.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>

namespace lumaro::browse {

using platform::Log;

namespace {
const QString kTag = QStringLiteral("HotkeyDispatcher");
}

FolderNavigator::FolderNavigator(LMRModeState& state, FolderLoader* loader, FileSystemService* fileSystem,
                                 QObject* parent)
    : QObject(parent)
    , m_state(state)
    , m_loader(loader)
    , m_fileSystem(fileSystem ? *fileSystem : FileSystemService::shared())
{
    if (!m_loader) {
        m_ownLoader = std::make_unique<FolderLoader>(m_state, kTag, &m_fileSystem);
        m_loader = m_ownLoader.get();
    }
}

FolderNavigator::~FolderNavigator() = default;

QString FolderNavigator::move(int step)
{
    const auto current = m_state.currentFolder();
    if (!current) {
        Log::line(kTag, QStringLiteral("没有文件夹路径"));
        return {};
    }
    const QString target = m_state.isInDeepMode() ? targetInDeepMode(step) : targetAmongSiblings(*current, step);
    if (target.isEmpty()) {
        Log::line(kTag, step > 0 ? QStringLiteral("已经是最后一个文件夹") : QStringLiteral("已经是第一个文件夹"));
        return {};
    }
    Log::line(kTag, QStringLiteral("切换到文件夹: ") + target);
    open(target);
    return target;
}

QString FolderNavigator::targetInDeepMode(int step)
{
    const QStringList& walk = m_state.recursiveDirectoryList();
    const int next = m_state.currentDeepIndex() + step;
    if (next < 0 || next >= walk.size())
        return {};
    m_state.setCurrentDeepIndex(next);
    m_state.updateNavigationState(walk.at(next), m_state.baseDirectory(), m_state.directoryBaseList(), walk);
    return walk.at(next);
}

QString FolderNavigator::targetAmongSiblings(const QString& current, int step)
{
    const QString cleaned = QDir::cleanPath(QFileInfo(current).absoluteFilePath());
    const QString parent = QFileInfo(cleaned).absolutePath();
    if (parent == cleaned)
        return {};
    const QStringList siblings = m_fileSystem.subfolders(parent);
    qsizetype at = -1;
    for (qsizetype i = 0; i < siblings.size(); ++i) {
        if (QDir::cleanPath(siblings.at(i)) == cleaned)
            at = i;
    }
    const qsizetype next = at + step;
    if (at < 0 || next < 0 || next >= siblings.size())
        return {};
    return siblings.at(next);
}

void FolderNavigator::open(const QString& folder)
{
    if (m_state.isInDeepMode()) {
        // The granted folder stays the deep walk's base; only the listed folder changes.
        m_state.setFolderPath(m_state.authorizedDirectory(), folder, m_state.originalFolderPath());
    } else {
        m_state.setFolderPath(folder, folder, folder);
        m_state.setFolderBookmarkData(m_fileSystem.createBookmarkData(folder));
    }
    m_state.clearSelection();
    m_loader->load(folder);
    Q_EMIT folderChanged(folder);
}

} // namespace lumaro::browse
