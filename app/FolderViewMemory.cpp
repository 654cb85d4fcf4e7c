// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FolderViewMemory.h"

#include "platform/SettingsStore.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace lumaro::app {

namespace {

QJsonObject load(const platform::SettingsStore& store)
{
    const auto bytes = store.bytes(FolderViewMemory::settingsKey);
    return bytes ? QJsonDocument::fromJson(*bytes).object() : QJsonObject();
}

} // namespace

FolderViewMemory::FolderViewMemory(platform::SettingsStore& store)
    : m_store(store)
{
}

void FolderViewMemory::remember(const QString& folder, const View& view)
{
    if (folder.isEmpty())
        return;
    QJsonObject all = load(m_store);
    QJsonObject entry;
    entry.insert(QStringLiteral("geometry"), QString::fromLatin1(view.geometry.toBase64()));
    entry.insert(QStringLiteral("mode"), view.mode);
    entry.insert(QStringLiteral("selected"), view.selectedFile);
    entry.insert(QStringLiteral("seen"), QDateTime::currentMSecsSinceEpoch());
    all.insert(folder, entry);
    while (all.size() > maxFolders) {
        const auto oldest = std::min_element(all.begin(), all.end(), [](const QJsonValue& a, const QJsonValue& b) {
            return a.toObject().value(QStringLiteral("seen")).toDouble()
                < b.toObject().value(QStringLiteral("seen")).toDouble();
        });
        all.erase(oldest);
    }
    m_store.setBytes(settingsKey, QJsonDocument(all).toJson(QJsonDocument::Compact));
}

std::optional<FolderViewMemory::View> FolderViewMemory::recall(const QString& folder) const
{
    const QJsonValue value = load(m_store).value(folder);
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject entry = value.toObject();
    View view;
    view.geometry = QByteArray::fromBase64(entry.value(QStringLiteral("geometry")).toString().toLatin1());
    view.mode = entry.value(QStringLiteral("mode")).toInt();
    view.selectedFile = entry.value(QStringLiteral("selected")).toString();
    return view;
}

} // namespace lumaro::app
