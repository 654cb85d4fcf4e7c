// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/ChannelLocator.h"

#include "platform/FolderAccessToken.h"
#include "platform/files/FileNameCodec.h"
#include "platform/volumes/VolumeIdentity.h"

#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

namespace lumaro::library {

namespace {

ChannelPlace placeOfFolder(const QString& path)
{
    if (platform::FolderAccessToken::startAccess(path)) {
        platform::FolderAccessToken::stopAccess(path);
        return {ChannelStatus::available, path, {}};
    }
    if (platform::FileNameCodec::exists(path) && QFileInfo(path).isDir())
        return {ChannelStatus::unreadable, path, QStringLiteral("无法读取此文件夹（权限不足？）")};
    return {ChannelStatus::folderMissing, path, QStringLiteral("文件夹已不存在（被移动、改名或删除）")};
}

} // namespace

ChannelLocator::ChannelLocator(platform::RemovableVolumeMonitor::VolumeSource volumes)
    : m_volumes(std::move(volumes))
{
}

void ChannelLocator::noteVolume(Channel& channel)
{
    const QString root = QStorageInfo(channel.path).rootPath();
    if (root.isEmpty() || root == QStringLiteral("/") ||
        !platform::RemovableVolumeMonitor::isRemovableMountPath(root))
        return;
    const platform::VolumeIdentity identity = platform::VolumeIdentity::of(root);
    if (identity.device.isEmpty())
        return;
    channel.volumeKey = identity.key();
    channel.volumeRoot = root;
    channel.volumeLabel = identity.label.isEmpty() ? QDir(root).dirName() : identity.label;
}

QString ChannelLocator::statusName(ChannelStatus status)
{
    switch (status) {
    case ChannelStatus::available:
        return QStringLiteral("available");
    case ChannelStatus::cardNotMounted:
        return QStringLiteral("card-not-mounted");
    case ChannelStatus::folderMissing:
        return QStringLiteral("folder-missing");
    case ChannelStatus::unreadable:
        return QStringLiteral("unreadable");
    }
    return {};
}

const QHash<QString, QString>& ChannelLocator::mountedKeys()
{
    if (!m_keys) {
        m_keys.emplace();
        for (const platform::MountedVolume& volume :
             m_volumes ? m_volumes() : QList<platform::MountedVolume>())
            m_keys->insert(volume.rootPath, platform::VolumeIdentity::of(volume.rootPath).key());
    }
    return *m_keys;
}

ChannelPlace ChannelLocator::locate(const Channel& channel)
{
    QString path = channel.path;
    if (const auto resolved = platform::FolderAccessToken::resolve(channel.token))
        path = resolved->path;
    if (channel.volumeKey.isEmpty())
        return placeOfFolder(path);
    return locateOnCard(channel, path);
}

ChannelPlace ChannelLocator::locateOnCard(const Channel& channel, const QString& path)
{
    const QString below = QDir(channel.volumeRoot).relativeFilePath(path);
    // A stored channel whose folder does not lie on its card (an edited or damaged list) is not followed
    // out of the card onto whatever its path would name there.
    if (QDir::isAbsolutePath(below) || below == QLatin1String("..") || below.startsWith(QLatin1String("../")))
        return {ChannelStatus::folderMissing, path,
                QStringLiteral("存储卡“%1”上已没有此文件夹").arg(channel.volumeLabel)};
    // The card's old mount path first: that is where it usually comes back.
    QStringList roots = mountedKeys().keys(channel.volumeKey);
    std::stable_partition(roots.begin(), roots.end(), [&](const QString& root) {
        return QDir::cleanPath(root) == QDir::cleanPath(channel.volumeRoot);
    });
    if (roots.isEmpty()) {
        return {ChannelStatus::cardNotMounted, path,
                QStringLiteral("存储卡“%1”未插入或未挂载").arg(channel.volumeLabel)};
    }
    ChannelPlace place;
    for (const QString& root : roots) {
        place = placeOfFolder(QDir::cleanPath(QDir(root).filePath(below)));
        if (place.isAvailable())
            return place;
    }
    if (place.status == ChannelStatus::folderMissing)
        place.reason = QStringLiteral("存储卡“%1”上已没有此文件夹").arg(channel.volumeLabel);
    return place;
}

} // namespace lumaro::library
