// SPDX-License-Identifier: GPL-3.0-or-later
#include "home/RecentFolders.h"

#include "platform/SettingsStore.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

namespace lumaro::home {

const QString RecentFolders::settingsKey = QStringLiteral("HomePage_RecentFolders");

RecentFolders::RecentFolders(platform::SettingsStore& store) : m_store(store) {}

QStringList RecentFolders::folders() const
{
    // The stored list may have been edited by hand or written by another version: what the home page shows is
    // still clean absolute paths, each once, at most maxFolders.
    QStringList folders;
    for (const QJsonValue& value :
         QJsonDocument::fromJson(m_store.bytes(settingsKey).value_or(QByteArray())).array()) {
        const QString folder = QDir::cleanPath(value.toString());
        if (folders.size() < maxFolders && QDir::isAbsolutePath(folder) && !folders.contains(folder))
            folders << folder;
    }
    return folders;
}

void RecentFolders::remember(const QString& folder)
{
    if (folder.isEmpty())
        return;
    const QString clean = QDir::cleanPath(folder);
    QStringList folders = this->folders();
    folders.removeAll(clean);
    folders.prepend(clean);
    while (folders.size() > maxFolders)
        folders.removeLast();
    m_store.setBytes(settingsKey,
                     QJsonDocument(QJsonArray::fromStringList(folders)).toJson(QJsonDocument::Compact));
}

} // namespace lumaro::home
