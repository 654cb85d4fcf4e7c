// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FolderViewMemory.h"

#include "platform/SettingsStore.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>
#include <vector>

namespace lumaro::app {

namespace {

QJsonObject load(const platform::SettingsStore& store)
{
    const auto bytes = store.bytes(FolderViewMemory::settingsKey);
    return bytes ? QJsonDocument::fromJson(*bytes).object() : QJsonObject();
}

// Keeps the `maxFolders` folders seen last, in one pass. The folder just left is never the one forgotten: a
// clock that was set ahead once leaves entries "seen" in the future, which would otherwise outrank it.
void forgetOldest(QJsonObject& all, const QString& kept)
{
    if (all.size() <= FolderViewMemory::maxFolders)
        return;
    std::vector<std::pair<double, QString>> others;
    for (auto it = all.constBegin(); it != all.constEnd(); ++it) {
        if (it.key() != kept)
            others.emplace_back(it.value().toObject().value(QStringLiteral("seen")).toDouble(), it.key());
    }
    const size_t excess = size_t(all.size() - FolderViewMemory::maxFolders);
    std::partial_sort(others.begin(), others.begin() + qsizetype(excess), others.end());
    for (size_t i = 0; i < excess; ++i)
        all.remove(others[i].second);
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
    forgetOldest(all, folder);
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
