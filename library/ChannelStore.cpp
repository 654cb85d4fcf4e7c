// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/ChannelStore.h"

#include "library/ChannelLocator.h"
#include "platform/FolderAccessToken.h"
#include "platform/Log.h"
#include "platform/QSettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::library {

const QString ChannelStore::settingsKey = QStringLiteral("ChannelStore_Channels");

namespace {

const QString kTag = QStringLiteral("ChannelStore");

QJsonObject toJson(const Channel& channel)
{
    return {{QStringLiteral("name"), channel.name},
            {QStringLiteral("path"), channel.path},
            {QStringLiteral("token"), QString::fromLatin1(channel.token.toBase64())},
            {QStringLiteral("volumeKey"), channel.volumeKey},
            {QStringLiteral("volumeRoot"), channel.volumeRoot},
            {QStringLiteral("volumeLabel"), channel.volumeLabel}};
}

std::optional<Channel> fromJson(const QJsonValue& value)
{
    const QJsonObject object = value.toObject();
    Channel channel;
    channel.name = object.value(QStringLiteral("name")).toString();
    channel.path = object.value(QStringLiteral("path")).toString();
    if (channel.name.isEmpty() || channel.path.isEmpty())
        return std::nullopt;
    channel.token = QByteArray::fromBase64(object.value(QStringLiteral("token")).toString().toLatin1());
    channel.volumeKey = object.value(QStringLiteral("volumeKey")).toString();
    channel.volumeRoot = object.value(QStringLiteral("volumeRoot")).toString();
    channel.volumeLabel = object.value(QStringLiteral("volumeLabel")).toString();
    return channel;
}

bool isValidIndex(const QList<Channel>& list, int index)
{
    return index >= 0 && index < list.size();
}

std::optional<QString> noSuchChannel(int index)
{
    return QStringLiteral("没有第 %1 个频道").arg(index + 1);
}

std::optional<QString> problemWithName(const QList<Channel>& list, const QString& name, int except)
{
    if (name.isEmpty())
        return QStringLiteral("频道名称不能为空");
    for (int i = 0; i < list.size(); ++i) {
        if (i != except && list.at(i).name == name)
            return QStringLiteral("已有同名频道: ") + name;
    }
    return std::nullopt;
}

} // namespace

ChannelStore& ChannelStore::shared()
{
    static ChannelStore store(platform::QSettingsStore::shared());
    return store;
}

ChannelStore::ChannelStore(platform::SettingsStore& settings, QObject* parent)
    : QObject(parent), m_settings(settings)
{
}

std::optional<QList<Channel>> ChannelStore::load() const
{
    const auto stored = m_settings.bytes(settingsKey);
    if (!stored || stored->isEmpty())
        return QList<Channel>{};
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(*stored, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray())
        return std::nullopt;
    QList<Channel> list;
    for (const QJsonValue& value : document.array()) {
        if (const auto channel = fromJson(value))
            list.append(*channel);
    }
    return list;
}

QList<Channel> ChannelStore::channels() const
{
    const auto list = load();
    if (!list)
        platform::Log::line(kTag,
                            QStringLiteral("⚠️ 频道设置无法读取，未作改动: ") + settingsKey);
    return list.value_or(QList<Channel>{});
}

int ChannelStore::indexOf(const QString& nameOrPath) const
{
    const QList<Channel> list = channels();
    for (int i = 0; i < list.size(); ++i) {
        if (list.at(i).name == nameOrPath)
            return i;
    }
    const QString path = QDir::cleanPath(QFileInfo(nameOrPath).absoluteFilePath());
    for (int i = 0; i < list.size(); ++i) {
        if (list.at(i).path == path)
            return i;
    }
    return -1;
}

std::optional<QString>
ChannelStore::change(const std::function<std::optional<QString>(QList<Channel>&)>& edit)
{
    auto list = load();
    if (!list)
        return QStringLiteral("频道设置无法读取，为免丢失未作改动（设置键 %1）").arg(settingsKey);
    if (auto refusal = edit(*list))
        return refusal;
    QJsonArray array;
    for (const Channel& channel : *list)
        array.append(toJson(channel));
    m_settings.setBytes(settingsKey, QJsonDocument(array).toJson(QJsonDocument::Compact));
    Q_EMIT channelsChanged();
    return std::nullopt;
}

std::optional<QString> ChannelStore::add(const QString& folder, const QString& name)
{
    QString error;
    const auto token = platform::FolderAccessToken::create(folder, &error);
    if (!token)
        return error;
    Channel channel;
    channel.path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    channel.token = *token;
    const QString folderName = QFileInfo(channel.path).fileName();
    channel.name =
        name.trimmed().isEmpty() ? (folderName.isEmpty() ? channel.path : folderName) : name.trimmed();
    ChannelLocator::noteVolume(channel);
    return change([&](QList<Channel>& list) -> std::optional<QString> {
        for (const Channel& other : list) {
            if (other.path == channel.path)
                return QStringLiteral("此文件夹已是频道“%1”").arg(other.name);
        }
        if (auto problem = problemWithName(list, channel.name, -1))
            return problem;
        list.append(channel);
        platform::Log::line(kTag, QStringLiteral("✅ 已添加频道: %1 -> %2").arg(channel.name, channel.path));
        return std::nullopt;
    });
}

std::optional<QString> ChannelStore::rename(int index, const QString& name)
{
    return change([&](QList<Channel>& list) -> std::optional<QString> {
        if (!isValidIndex(list, index))
            return noSuchChannel(index);
        if (auto problem = problemWithName(list, name.trimmed(), index))
            return problem;
        list[index].name = name.trimmed();
        return std::nullopt;
    });
}

std::optional<QString> ChannelStore::move(int from, int to)
{
    return change([&](QList<Channel>& list) -> std::optional<QString> {
        if (!isValidIndex(list, from))
            return noSuchChannel(from);
        if (!isValidIndex(list, to))
            return noSuchChannel(to);
        list.move(from, to);
        return std::nullopt;
    });
}

std::optional<QString> ChannelStore::remove(int index)
{
    return change([&](QList<Channel>& list) -> std::optional<QString> {
        if (!isValidIndex(list, index))
            return noSuchChannel(index);
        platform::Log::line(kTag, QStringLiteral("已移除频道: ") + list.at(index).name);
        list.removeAt(index);
        return std::nullopt;
    });
}

} // namespace lumaro::library
