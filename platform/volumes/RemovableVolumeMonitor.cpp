// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/volumes/RemovableVolumeMonitor.h"

#include "platform/volumes/UDisksMountEvents.h"

#include <QDir>
#include <QStorageInfo>

namespace lumaro::platform {

RemovableVolumeMonitor::RemovableVolumeMonitor(VolumeSource source, QObject* parent)
    : QObject(parent), m_source(std::move(source))
{
    connect(&m_timer, &QTimer::timeout, this, &RemovableVolumeMonitor::poll);
}

void RemovableVolumeMonitor::start(int intervalMs)
{
    poll();
    m_timer.start(intervalMs);
}

bool RemovableVolumeMonitor::startWithEvents(UDisksMountEvents* events, int safetyIntervalMs,
                                             int pollIntervalMs)
{
    const bool listening = events && events->isListening();
    if (listening)
        connect(events, &UDisksMountEvents::changed, this, &RemovableVolumeMonitor::poll);
    start(listening ? safetyIntervalMs : pollIntervalMs);
    return listening;
}

void RemovableVolumeMonitor::stop()
{
    m_timer.stop();
}

bool RemovableVolumeMonitor::isRemovableMountPath(const QString& rootPath)
{
    const QString path = QDir::cleanPath(rootPath);
    for (const char* prefix : {"/media/", "/run/media/", "/mnt/"}) {
        if (path.startsWith(QLatin1String(prefix)))
            return true;
    }
    return false;
}

RemovableVolumeMonitor::VolumeSource RemovableVolumeMonitor::systemRemovableVolumes()
{
    return [] {
        QList<MountedVolume> volumes;
        for (const QStorageInfo& storage : QStorageInfo::mountedVolumes()) {
            if (!storage.isValid() || !storage.isReady() || !isRemovableMountPath(storage.rootPath()))
                continue;
            const QString label = storage.name();
            volumes.append({storage.rootPath(), label.isEmpty() ? QDir(storage.rootPath()).dirName() : label,
                            QString::fromLocal8Bit(storage.device()),
                            QString::fromLatin1(storage.fileSystemType())});
        }
        return volumes;
    };
}

void RemovableVolumeMonitor::poll()
{
    const QList<MountedVolume> now = m_source ? m_source() : QList<MountedVolume>();
    QSet<QString> before;
    for (const MountedVolume& volume : m_volumes)
        before.insert(volume.rootPath);
    QSet<QString> after;
    for (const MountedVolume& volume : now)
        after.insert(volume.rootPath);
    const bool announce = m_primed;
    m_volumes = now;
    m_primed = true;
    if (!announce)
        return;
    for (const QString& root : before) {
        if (!after.contains(root))
            Q_EMIT volumeUnmounted(root);
    }
    for (const MountedVolume& volume : now) {
        if (!before.contains(volume.rootPath))
            Q_EMIT volumeMounted(volume);
    }
}

} // namespace lumaro::platform

// In this object rather than the module's shared moc file: a program linking another QObject of this module
// then pulls in neither this monitor nor Qt D-Bus behind it (lumaro-cli starts without them).
#include "moc_RemovableVolumeMonitor.cpp"
