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
    QStringList folders;
    for (const QJsonValue& value :
         QJsonDocument::fromJson(m_store.bytes(settingsKey).value_or(QByteArray())).array()) {
        if (value.isString() && !value.toString().isEmpty())
            folders << value.toString();
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
