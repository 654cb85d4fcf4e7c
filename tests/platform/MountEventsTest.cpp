// SPDX-License-Identifier: GPL-3.0-or-later
// udisks2's signals on a private bus (a real dbus-daemon, this test's own), and the monitor reading the mount
// table on each of them.
#include "platform/volumes/RemovableVolumeMonitor.h"
#include "platform/volumes/UDisksMountEvents.h"

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
using lumaro::testing::waitUntil;

namespace {

class PrivateBus
{
public:
    PrivateBus()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty())
            return;
        m_daemon.start(
            QStringLiteral("dbus-daemon"),
            {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        if (m_daemon.waitForReadyRead(10000))
            m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    ~PrivateBus()
    {
        QDBusConnection::disconnectFromBus(QStringLiteral("udisks"));
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    QString address() const { return m_address; }

    // A stand-in owning udisks2's name, from which the test sends what udisks2 sends.
    QDBusConnection udisks() const
    {
        QDBusConnection bus = QDBusConnection::connectToBus(m_address, QStringLiteral("udisks"));
        bus.registerService(QStringLiteral("org.freedesktop.UDisks2"));
        return bus;
    }

private:
    QProcess m_daemon;
    QString m_address;
};

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
    PrivateBus bus;
    if (bus.address().isEmpty())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    const QDBusConnection udisks = bus.udisks();
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
    PrivateBus bus;
    if (bus.address().isEmpty())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    UDisksMountEvents events(bus.address(), nullptr); // nobody owns udisks2's name on this bus
    RemovableVolumeMonitor monitor([] { return QList<MountedVolume>(); });

    EXPECT_FALSE(events.isListening());
    EXPECT_FALSE(monitor.startWithEvents(&events));
}
