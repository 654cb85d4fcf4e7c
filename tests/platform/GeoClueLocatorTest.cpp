// SPDX-License-Identifier: GPL-3.0-or-later
// The GeoClue locator against a stand-in for GeoClue2 on a private bus (a real dbus-daemon, this test's own):
// the client named and set to city accuracy before it starts, the place read from the location object, a
// refusal said with its reason, and no service at all.
#include "platform/location/GeoClueLocator.h"

#include "tests/platform/PrivateBus.h"
#include "tests/support/TempFolder.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusError>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

using lumaro::platform::GeoClueLocator;
using lumaro::testing::PrivateBus;
using lumaro::testing::waitUntil;

class FakeManager : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.GeoClue2.Manager")
public Q_SLOTS:
    QDBusObjectPath GetClient()
    {
        return QDBusObjectPath(QStringLiteral("/org/freedesktop/GeoClue2/Client/1"));
    }
};

class FakeClient : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.GeoClue2.Client")
    Q_PROPERTY(QString DesktopId MEMBER desktopId)
    Q_PROPERTY(uint RequestedAccuracyLevel MEMBER accuracy)
public:
    QString desktopId;
    uint accuracy = 0;
    bool refuse = false;
    int startedNamed = 0; // starts that came after the client was named and given an accuracy
    int stops = 0;

public Q_SLOTS:
    void Start()
    {
        if (refuse) {
            sendErrorReply(QDBusError::AccessDenied, QStringLiteral("Geolocation disabled for UID 1000"));
            return;
        }
        if (!desktopId.isEmpty() && accuracy > 0)
            ++startedNamed;
        QTimer::singleShot(0, this, [this] {
            Q_EMIT LocationUpdated(QDBusObjectPath(QStringLiteral("/")),
                                   QDBusObjectPath(QStringLiteral("/org/freedesktop/GeoClue2/Location/1")));
        });
    }
    void Stop() { ++stops; }

Q_SIGNALS:
    void LocationUpdated(const QDBusObjectPath& oldLocation, const QDBusObjectPath& newLocation);
};

class FakeLocation : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.GeoClue2.Location")
    Q_PROPERTY(double Latitude MEMBER latitude)
    Q_PROPERTY(double Longitude MEMBER longitude)
    Q_PROPERTY(double Accuracy MEMBER accuracy)
public:
    double latitude = 31.23;
    double longitude = 121.47;
    double accuracy = 5000;
};

struct FakeGeoClue
{
    explicit FakeGeoClue(const QString& address)
        : bus(QDBusConnection::connectToBus(address, QStringLiteral("geoclue")))
    {
        const auto everything = QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                                QDBusConnection::ExportAllProperties;
        bus.registerObject(QStringLiteral("/org/freedesktop/GeoClue2/Manager"), &manager, everything);
        bus.registerObject(QStringLiteral("/org/freedesktop/GeoClue2/Client/1"), &client, everything);
        bus.registerObject(QStringLiteral("/org/freedesktop/GeoClue2/Location/1"), &location, everything);
        bus.registerService(QStringLiteral("org.freedesktop.GeoClue2"));
    }

    QDBusConnection bus;
    FakeManager manager;
    FakeClient client;
    FakeLocation location;
};

TEST(GeoClueLocator, AsksForACityPlaceAndStopsOnceItHasOne)
{
    PrivateBus bus(QStringLiteral("geoclue"));
    if (bus.address().isEmpty())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    FakeGeoClue geoclue(bus.address());
    GeoClueLocator locator(bus.address(), nullptr);
    ASSERT_TRUE(locator.isAvailable());
    QSignalSpy located(&locator, &GeoClueLocator::located);
    QSignalSpy failed(&locator, &GeoClueLocator::failed);

    locator.locate();
    ASSERT_TRUE(waitUntil([&] { return located.count() + failed.count() > 0; }))
        << "no answer from the stand-in";
    ASSERT_EQ(located.count(), 1) << (failed.isEmpty() ? "" : failed.at(0).at(0).toString().toStdString());
    EXPECT_DOUBLE_EQ(located.at(0).at(0).toDouble(), 31.23);
    EXPECT_DOUBLE_EQ(located.at(0).at(1).toDouble(), 121.47);
    EXPECT_EQ(geoclue.client.desktopId, QStringLiteral("org.lumaro.Lumaro"));
    EXPECT_EQ(geoclue.client.accuracy, 4u);
    EXPECT_EQ(geoclue.client.startedNamed, 1) << "started before it was named: GeoClue would refuse";
    EXPECT_TRUE(waitUntil([&] { return geoclue.client.stops == 1; }));
}

TEST(GeoClueLocator, ARefusalIsSaidAndNoServiceIsNoLocator)
{
    PrivateBus bus(QStringLiteral("geoclue"));
    if (bus.address().isEmpty())
        GTEST_SKIP() << "no dbus-daemon to run a private bus";
    {
        GeoClueLocator nobody(bus.address(), nullptr);
        EXPECT_FALSE(nobody.isAvailable());
        QSignalSpy failed(&nobody, &GeoClueLocator::failed);
        nobody.locate();
        ASSERT_TRUE(waitUntil([&] { return failed.count() == 1; }));
    }
    FakeGeoClue geoclue(bus.address());
    geoclue.client.refuse = true;
    GeoClueLocator locator(bus.address(), nullptr);
    QSignalSpy located(&locator, &GeoClueLocator::located);
    QSignalSpy failed(&locator, &GeoClueLocator::failed);
    locator.locate();
    ASSERT_TRUE(waitUntil([&] { return failed.count() == 1; }));
    EXPECT_TRUE(failed.at(0).at(0).toString().contains(QStringLiteral("Geolocation disabled")));
    EXPECT_TRUE(located.isEmpty());
}

} // namespace

#include "GeoClueLocatorTest.moc"
