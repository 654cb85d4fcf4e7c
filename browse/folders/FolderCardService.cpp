// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/folders/FolderCardService.h"

#include "browse/folders/FolderCardScanner.h"
#include "browse/state/FileSystemService.h"
#include "platform/Log.h"

#include <QElapsedTimer>
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
    const quint64 generation = ++*m_generation;
    m_parent = parent;
    m_busy = !parent.isEmpty();
    if (parent.isEmpty())
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
    QThreadPool::globalInstance()->start([parent, scanner, current, generation, post] {
        QElapsedTimer timer;
        timer.start();
        const QStringList subfolders = FileSystemService::shared().subfolders(parent);
        post([parent, subfolders](FolderCardService& service) { Q_EMIT service.listed(parent, subfolders); });
        scanner->scan(parent, subfolders, [&](const QList<FolderCard>& cards) {
            post([parent, cards](FolderCardService& service) { Q_EMIT service.cardsReady(parent, cards); });
            return *current == generation;
        });
        if (*current != generation)
            return;
        platform::Log::raw(QStringLiteral("PERF-FOLDER-CARDS: %1 个子文件夹 %2 s")
                               .arg(subfolders.size())
                               .arg(double(timer.nsecsElapsed()) / 1e9, 0, 'f', 3));
        post([parent](FolderCardService& service) {
            service.m_busy = false;
            Q_EMIT service.finished(parent);
        });
    });
}

} // namespace lumaro::browse
