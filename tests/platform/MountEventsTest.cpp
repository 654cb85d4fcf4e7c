// SPDX-License-Identifier: GPL-3.0-or-later
// udisks2's signals on a private bus (a real dbus-daemon, this test's own), and the monitor reading the mount
// table on each of them.
#include "platform/volumes/RemovableVolumeMonitor.h"
#include "platform/volumes/UDisksMountEvents.h"

#include "tests/platform/PrivateBus.h"
#include "tests/support/TempFolder.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>

#include <gtest/gtest.h>

using lumaro::platform::MountedVolume;
using lumaro::platform::RemovableVolumeMonitor;
using lumaro::platform::UDisksMountEvents;
using lumaro::testing::PrivateBus;
using lumaro::testing::waitUntil;

namespace {

// A stand-in owning udisks2's name on the private bus, from which the test sends what udisks2 sends.
QDBusConnection udisksOn(const PrivateBus& bus)
{
    QDBusConnection connection = QDBusConnection::connectToBus(bus.address(), QStringLiteral("udisks"));
    connection.registerService(QStringLiteral("org.freedesktop.UDisks2"));
    return connection;
}

QDBusMessage propertiesChanged(const QString& interface)
{
    QDBusMessage signal = QDBusMessage::createSignal(
        QStringLiteral("/org/freedesktop/UDisks2/block_devices/loop0"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
    signal << interface << QVariantMap{{QStringLiteral("MountPoints"), QVariant::fromValue(QStringList())}}
           << QStringList();
    return signal;
}

} // namespace

TEST(UDisksMountEvents, AMountSeenByUDisksMakesTheMonitorReadTheMountTable)
{
    PrivateBus bus(QStringLiteral("udisks"));
    if (bus.address().isEmpty())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    const QDBusConnection udisks = udisksOn(bus);
    UDisksMountEvents events(bus.address(), nullptr);
    ASSERT_TRUE(events.isListening());
    QList<MountedVolume> mounted;
    RemovableVolumeMonitor monitor([&] { return mounted; });
    QSignalSpy announced(&monitor, &RemovableVolumeMonitor::volumeMounted);
    QSignalSpy changes(&events, &UDisksMountEvents::changed);
    EXPECT_TRUE(monitor.startWithEvents(&events, 3600 * 1000));

    mounted.append({QStringLiteral("/media/u/EOS_DIGITAL"), QStringLiteral("EOS_DIGITAL"), {}, {}});
    udisks.send(propertiesChanged(QStringLiteral("org.freedesktop.UDisks2.Block"))); // not a mount: ignored
    udisks.send(propertiesChanged(QStringLiteral("org.freedesktop.UDisks2.Filesystem")));

    ASSERT_TRUE(waitUntil([&] { return announced.count() == 1; }));
    EXPECT_EQ(changes.count(), 1);
}

TEST(UDisksMountEvents, WithoutUDisksTheMonitorFallsBackToPolling)
{
    PrivateBus bus(QStringLiteral("udisks"));
    if (bus.address().isEmpty())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    UDisksMountEvents events(bus.address(), nullptr); // nobody owns udisks2's name on this bus
    RemovableVolumeMonitor monitor([] { return QList<MountedVolume>(); });

    EXPECT_FALSE(events.isListening());
    EXPECT_FALSE(monitor.startWithEvents(&events));
}
