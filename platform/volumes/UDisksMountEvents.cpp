// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/volumes/UDisksMountEvents.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QStringList>

namespace lumaro::platform {

namespace {

const QString kService = QStringLiteral("org.freedesktop.UDisks2");
const QString kRoot = QStringLiteral("/org/freedesktop/UDisks2");
const QString kObjectManager = QStringLiteral("org.freedesktop.DBus.ObjectManager");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString kFilesystem = QStringLiteral("org.freedesktop.UDisks2.Filesystem");

bool serviceIsThere(const QDBusConnection& bus)
{
    QDBusConnectionInterface* names = bus.interface();
    if (!names)
        return false;
    if (names->isServiceRegistered(kService).value())
        return true;
    // Desktops start udisks2 on first use; asking for it by name does the same.
    const QDBusReply<QStringList> activatable = names->call(QStringLiteral("ListActivatableNames"));
    return activatable.isValid() && activatable.value().contains(kService) &&
           names->startService(kService).isValid() && names->isServiceRegistered(kService).value();
}

} // namespace

UDisksMountEvents::UDisksMountEvents(QObject* parent) : QObject(parent)
{
    listen(QDBusConnection::systemBus());
}

UDisksMountEvents::UDisksMountEvents(const QString& busAddress, QObject* parent) : QObject(parent)
{
    listen(QDBusConnection::connectToBus(busAddress, QStringLiteral("lumaro-udisks-") + busAddress));
}

void UDisksMountEvents::listen(const QDBusConnection& constBus)
{
    QDBusConnection bus = constBus;
    if (!bus.isConnected() || !serviceIsThere(bus))
        return;
    const bool added = bus.connect(kService, kRoot, kObjectManager, QStringLiteral("InterfacesAdded"), this,
                                   SLOT(onInterfacesChanged()));
    const bool removed = bus.connect(kService, kRoot, kObjectManager, QStringLiteral("InterfacesRemoved"),
                                     this, SLOT(onInterfacesChanged()));
    // Any object path: each block device is an object of its own.
    const bool properties = bus.connect(kService, QString(), kProperties, QStringLiteral("PropertiesChanged"),
                                        this, SLOT(onPropertiesChanged(QString)));
    m_listening = added && removed && properties;
}

void UDisksMountEvents::onInterfacesChanged()
{
    Q_EMIT changed();
}

void UDisksMountEvents::onPropertiesChanged(const QString& interface)
{
    if (interface == kFilesystem)
        Q_EMIT changed();
}

} // namespace lumaro::platform

// In this object rather than the module's shared moc file, which every QObject of the module pulls in: only
// what uses these events loads Qt D-Bus (lumaro-cli starts without it).
#include "moc_UDisksMountEvents.cpp"
