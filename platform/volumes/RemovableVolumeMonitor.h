// SPDX-License-Identifier: GPL-3.0-or-later
// Notices memory cards and other removable volumes as they are mounted and unmounted.
#pragma once

#include <QList>
#include <QMetaType>
#include <QObject>
#include <QSet>
#include <QString>
#include <QTimer>

#include <functional>

namespace lumaro::platform {

struct MountedVolume
{
    QString rootPath; // the mount path
    QString name;     // the volume label, or the last component of the mount path
    QString device;
    QString fileSystemType;
};

// Reads the mount table (QStorageInfo) when udisks2 says a file system was mounted or unmounted, or every few
// seconds where there is no udisks2 on the system bus; volumes mounted where desktops mount removable media
// (/media, /run/media, /mnt) count, system file systems never do. Volumes mounted before start() are known
// but not announced. The source of volumes and of mount events is injectable, so tests drive poll() with
// lists of their own. Lives on the main thread; signals are emitted there.
class UDisksMountEvents;

class RemovableVolumeMonitor : public QObject
{
    Q_OBJECT
public:
    using VolumeSource = std::function<QList<MountedVolume>()>;

    explicit RemovableVolumeMonitor(VolumeSource source = systemRemovableVolumes(),
                                    QObject* parent = nullptr);

    // Polls every `intervalMs`.
    void start(int intervalMs = 2000);
    // Reads the mount table on each of `events`' changes, and every `safetyIntervalMs` as well (a missed
    // signal must not hide a card); without a listening event source, polls every `pollIntervalMs`. Returns
    // whether events are heard.
    bool startWithEvents(UDisksMountEvents* events, int safetyIntervalMs = 30000, int pollIntervalMs = 2000);
    void stop();
    // Compares the source's list with the last one and announces the differences.
    void poll();

    QList<MountedVolume> volumes() const { return m_volumes; }

    // The removable volumes the system has mounted now.
    static VolumeSource systemRemovableVolumes();
    static bool isRemovableMountPath(const QString& rootPath);

Q_SIGNALS:
    void volumeMounted(const lumaro::platform::MountedVolume& volume);
    void volumeUnmounted(const QString& rootPath);

private:
    VolumeSource m_source;
    QTimer m_timer;
    QList<MountedVolume> m_volumes;
    bool m_primed = false;
};

} // namespace lumaro::platform

Q_DECLARE_METATYPE(lumaro::platform::MountedVolume)
