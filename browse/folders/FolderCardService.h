// SPDX-License-Identifier: GPL-3.0-or-later
// Folder cards of the folder shown, worked out off the main thread and handed back in batches.
#pragma once

#include "browse/folders/FolderCard.h"

#include <QList>
#include <QObject>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>

namespace lumaro::browse {

class FolderCardScanner;

// Main thread. show() lists the folder's children and scans them on the global pool; cardsReady() brings each
// batch back (cached folders first, all at once), listed() the children in their order before any card. A
// newer show() cancels the older scan between batches and drops whatever it still hands back. showFolders()
// does the same for folders from anywhere (the home page's recent folders), under `key` in the signals; they
// are scanned by parent, so give such a service a scanner with a cache folder of its own: the folder panel's
// cache of a parent holds all its children, and a scan of a few of them would replace it.
class FolderCardService : public QObject
{
    Q_OBJECT
public:
    explicit FolderCardService(std::shared_ptr<FolderCardScanner> scanner = {}, QObject* parent = nullptr);
    ~FolderCardService() override;

    void show(const QString& parent);
    void showFolders(const QString& key, const QStringList& folders);
    QString parent() const { return m_parent; }
    bool isBusy() const { return m_busy; }

Q_SIGNALS:
    void listed(const QString& parent, const QStringList& subfolders);
    void cardsReady(const QString& parent, const QList<lumaro::browse::FolderCard>& cards);
    void finished(const QString& parent);

private:
    // `list` runs on the pool and gives the folders to scan: `key`'s children, or folders of any parents.
    void start(const QString& key, std::function<QStringList()> list, bool groupByParent);

    std::shared_ptr<FolderCardScanner> m_scanner;
    std::shared_ptr<std::atomic<quint64>> m_generation;
    QString m_parent;
    bool m_busy = false;
};

} // namespace lumaro::browse

Q_DECLARE_METATYPE(lumaro::browse::FolderCard)
