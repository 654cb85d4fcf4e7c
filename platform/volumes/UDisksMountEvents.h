// SPDX-License-Identifier: GPL-3.0-or-later
// Tells when udisks2 (the desktop's disk service) mounts or unmounts a file system, over the system D-Bus.
#pragma once

#include <QObject>
#include <QString>

class QDBusConnection;

namespace lumaro::platform {

// Listens to the object manager's InterfacesAdded/InterfacesRemoved and to property changes of the
// org.freedesktop.UDisks2.Filesystem interface (its MountPoints change on every mount and unmount). Says only
// that something changed; the mount table stays the one truth of what is mounted. Main thread.
class UDisksMountEvents : public QObject
{
    Q_OBJECT
public:
    // On the system bus.
    explicit UDisksMountEvents(QObject* parent = nullptr);
    // On the bus at `busAddress` ("unix:path=…"), for a test's private bus.
    UDisksMountEvents(const QString& busAddress, QObject* parent);

    // True when the bus is reachable and udisks2 owns its name there (it is started on demand when
    // activatable).
    bool isListening() const { return m_listening; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void onInterfacesChanged();
    void onPropertiesChanged(const QString& interface);

private:
    void listen(const QDBusConnection& bus);

    bool m_listening = false;
};

} // namespace lumaro::platform
