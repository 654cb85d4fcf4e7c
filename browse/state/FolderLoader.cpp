// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/FolderLoader.h"

#include "browse/state/FileSystemService.h"
#include "browse/state/LMRModeState.h"
#include "platform/Log.h"
#include "platform/XattrTagStore.h"
#include "platform/metadata/XmpSidecar.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QThreadPool>

namespace lumaro::browse {

using platform::Log;

namespace {

bool sameFolder(const QString& a, const QString& b)
{
    return QDir::cleanPath(a) == QDir::cleanPath(b);
}

} // namespace

FolderLoader::FolderLoader(LMRModeState& state, QString viewName, FileSystemService* service, QObject* parent,
                           platform::FileTagStore* tags)
    : QObject(parent), m_state(state), m_viewName(std::move(viewName)),
      m_service(service ? *service : FileSystemService::shared()),
      m_tags(tags ? *tags : platform::XattrTagStore::shared())
{
}

void FolderLoader::load(const QString& folder)
{
    if (folder.isEmpty()) {
        Log::line(m_viewName, QStringLiteral("没有选择文件夹路径"));
        return;
    }
    Log::line(m_viewName, QStringLiteral("开始加载文件夹: ") + folder);
    m_state.isLoadingImages = true;
    m_state.notify();
    const quint64 generation = ++m_generation;
    QPointer<FolderLoader> self(this);
    FileSystemService* service = &m_service;
    // Value in, list out: the pool thread touches nothing of this object.
    QThreadPool::globalInstance()->start([self, service, generation, folder] {
        const QStringList names = service->loadImageFileNames(folder);
        QMetaObject::invokeMethod(
            self.data(),
            [self, generation, folder, names] {
                if (self)
                    self->apply(generation, folder, names);
            },
            Qt::QueuedConnection);
    });
}

bool FolderLoader::isCurrent(quint64 generation, const QString& folder) const
{
    const auto current = m_state.currentFolder();
    return generation == m_generation && current && sameFolder(*current, folder);
}

void FolderLoader::apply(quint64 generation, const QString& folder, const QStringList& names)
{
    if (!isCurrent(generation, folder)) {
        Log::line(m_viewName, QStringLiteral("文件夹路径已改变，取消加载"));
        if (generation == m_generation) {
            m_state.isLoadingImages = false;
            m_state.notify();
        }
        Q_EMIT dropped(folder);
        return;
    }
    m_state.isBulkListUpdate = true;
    m_state.setImageFiles(names);
    m_state.isBulkListUpdate = false;
    m_state.isLoadingImages = false;
    Log::line(m_viewName, QStringLiteral("成功加载 %1 个图像文件").arg(names.size()));
    selectFirstWhenNothingSelected();
    m_state.notify();
    Q_EMIT loaded(folder, int(names.size()));
    readTags(generation, folder, names);
}

void FolderLoader::readTags(quint64 generation, const QString& folder, const QStringList& names)
{
    QPointer<FolderLoader> self(this);
    platform::FileTagStore* store = &m_tags;
    const quint64 revision = m_state.fileTagsRevision();
    QThreadPool::globalInstance()->start([self, store, generation, folder, names, revision] {
        const QDir dir(folder);
        QMap<QString, QStringList> tags;
        QMap<QString, platform::PictureMarks> ratings;
        for (const QString& name : names) {
            const QString path = dir.filePath(name);
            const QStringList found = store->tags(path).value_or(QStringList());
            if (!found.isEmpty())
                tags.insert(name, found);
            const auto marks = platform::XmpSidecar::read(path);
            if (marks && marks->hasRating())
                ratings.insert(name, *marks);
        }
        QMetaObject::invokeMethod(
            self.data(),
            [self, generation, folder, names, tags, ratings, revision] {
                if (!self || !self->isCurrent(generation, folder))
                    return;
                if (self->m_state.fileTagsRevision() != revision) {
                    // A colour was set while the folder was read: this reading may predate it, so read again.
                    self->readTags(generation, folder, names);
                    return;
                }
                self->m_state.setFolderTags(tags);
                self->m_state.setFolderRatings(ratings);
                Q_EMIT self->tagsLoaded(folder);
            },
            Qt::QueuedConnection);
    });
}

void FolderLoader::selectFirstWhenNothingSelected()
{
    if (m_state.imageFiles().isEmpty() || m_state.selectedImageIndex())
        return;
    const QString first = m_state.imageFiles().constFirst();
    Log::line(m_viewName, QStringLiteral("选择第一张图像作为预览: ") + first);
    m_state.select(0);
    const QString loadingTag = QStringLiteral("BrowseAreaLoadingService");
    Log::line(loadingTag, QStringLiteral("首图: ") + first);
    const auto selected = m_state.selectedImageFileName();
    Log::line(loadingTag, QStringLiteral("验证选中状态: ") + selected.value_or(QStringLiteral("nil")));
    if (selected != first)
        Log::line(loadingTag, QStringLiteral("警告: 选中状态验证失败"));
}

} // namespace lumaro::browse
