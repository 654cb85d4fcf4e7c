// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/folders/FolderCardService.h"

#include "browse/folders/FolderCardScanner.h"
#include "browse/state/FileSystemService.h"
#include "platform/Log.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QMap>
#include <QPointer>
#include <QThreadPool>

namespace lumaro::browse {

FolderCardService::FolderCardService(std::shared_ptr<FolderCardScanner> scanner, QObject* parent)
    : QObject(parent), m_scanner(scanner ? std::move(scanner) : std::make_shared<FolderCardScanner>()),
      m_generation(std::make_shared<std::atomic<quint64>>(0))
{
}

FolderCardService::~FolderCardService()
{
    ++*m_generation; // a scan still running stops at its next batch
}

void FolderCardService::show(const QString& parent)
{
    start(
        parent, [parent] { return FileSystemService::shared().subfolders(parent); }, false);
}

void FolderCardService::showFolders(const QString& key, const QStringList& folders)
{
    start(
        key, [folders] { return folders; }, true);
}

void FolderCardService::start(const QString& key, std::function<QStringList()> list, bool groupByParent)
{
    const quint64 generation = ++*m_generation;
    m_parent = key;
    m_busy = !key.isEmpty();
    if (key.isEmpty())
        return;
    QPointer<FolderCardService> self(this);
    auto current = m_generation;
    auto scanner = m_scanner;
    // Hands `deliver` to the main thread unless a newer show() came meanwhile.
    const auto post = [self, current, generation](std::function<void(FolderCardService&)> deliver) {
        QMetaObject::invokeMethod(
            self.data(),
            [self, current, generation, deliver] {
                if (self && *current == generation)
                    deliver(*self);
            },
            Qt::QueuedConnection);
    };
    QThreadPool::globalInstance()->start([key, list, groupByParent, scanner, current, generation, post] {
        QElapsedTimer timer;
        timer.start();
        const QStringList folders = list();
        post([key, folders](FolderCardService& service) { Q_EMIT service.listed(key, folders); });
        // The cache is kept per parent: the children of the folder shown, or the given folders grouped by
        // theirs.
        QMap<QString, QStringList> byParent;
        if (!groupByParent)
            byParent.insert(key, folders);
        for (const QString& folder : groupByParent ? folders : QStringList())
            byParent[QFileInfo(folder).path()] << folder;
        for (auto group = byParent.cbegin(); group != byParent.cend() && *current == generation; ++group) {
            scanner->scan(group.key(), group.value(), [&](const QList<FolderCard>& cards) {
                post([key, cards](FolderCardService& service) { Q_EMIT service.cardsReady(key, cards); });
                return *current == generation;
            });
        }
        if (*current != generation)
            return;
        platform::Log::raw(QStringLiteral("PERF-FOLDER-CARDS: %1 个子文件夹 %2 s")
                               .arg(folders.size())
                               .arg(double(timer.nsecsElapsed()) / 1e9, 0, 'f', 3));
        post([key](FolderCardService& service) {
            service.m_busy = false;
            Q_EMIT service.finished(key);
        });
    });
}

} // namespace lumaro::browse
