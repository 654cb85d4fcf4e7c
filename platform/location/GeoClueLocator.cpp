// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/location/GeoClueLocator.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QDBusVariant>

#include <functional>

namespace lumaro::platform {

namespace {

const QString kService = QStringLiteral("org.freedesktop.GeoClue2");
const QString kManagerPath = QStringLiteral("/org/freedesktop/GeoClue2/Manager");
const QString kManager = QStringLiteral("org.freedesktop.GeoClue2.Manager");
const QString kClient = QStringLiteral("org.freedesktop.GeoClue2.Client");
const QString kLocation = QStringLiteral("org.freedesktop.GeoClue2.Location");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
constexpr uint kCityAccuracy = 4; // GCLUE_ACCURACY_LEVEL_CITY

// Sends `message` and hands its reply (or error) to `then` on this thread.
void callThen(QDBusConnection& bus, const QDBusMessage& message, QObject* context,
              std::function<void(const QDBusMessage&)> then)
{
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, then] {
        watcher->deleteLater();
        then(watcher->reply());
    });
}

QDBusMessage clientProperty(const QString& path, const QString& name, const QVariant& value)
{
    QDBusMessage message = QDBusMessage::createMethodCall(kService, path, kProperties, QStringLiteral("Set"));
    message << kClient << name << QVariant::fromValue(QDBusVariant(value));
    return message;
}

bool isError(const QDBusMessage& reply)
{
    return reply.type() == QDBusMessage::ErrorMessage;
}

} // namespace

GeoClueLocator::GeoClueLocator(QObject* parent) : QObject(parent), m_bus(QDBusConnection::systemBus())
{
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this,
            [this] { finish(tr("%1 秒内没有得到位置").arg(m_timeout.interval() / 1000)); });
}

GeoClueLocator::GeoClueLocator(const QString& busAddress, QObject* parent)
    : QObject(parent),
      m_bus(QDBusConnection::connectToBus(busAddress, QStringLiteral("lumaro-geoclue-") + busAddress))
{
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this,
            [this] { finish(tr("%1 秒内没有得到位置").arg(m_timeout.interval() / 1000)); });
}

GeoClueLocator::~GeoClueLocator()
{
    if (!m_client.isEmpty())
        m_bus.asyncCall(QDBusMessage::createMethodCall(kService, m_client, kClient, QStringLiteral("Stop")));
}

bool GeoClueLocator::isAvailable() const
{
    QDBusConnectionInterface* names = m_bus.isConnected() ? m_bus.interface() : nullptr;
    if (!names)
        return false;
    if (names->isServiceRegistered(kService).value())
        return true;
    // GeoClue is started by D-Bus on first use.
    const QDBusReply<QStringList> activatable = names->call(QStringLiteral("ListActivatableNames"));
    return activatable.isValid() && activatable.value().contains(kService);
}

void GeoClueLocator::locate(int timeoutMs)
{
    if (!m_client.isEmpty() || m_timeout.isActive())
        return; // one request at a time; its answer serves this call too
    if (!isAvailable()) {
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT failed(tr("本机没有定位服务 (GeoClue)")); }, Qt::QueuedConnection);
        return;
    }
    m_timeout.start(timeoutMs);
    callThen(m_bus,
             QDBusMessage::createMethodCall(kService, kManagerPath, kManager, QStringLiteral("GetClient")),
             this, [this](const QDBusMessage& reply) {
                 if (isError(reply) || reply.arguments().isEmpty())
                     return finish(reply.errorMessage());
                 clientReady(reply.arguments().constFirst().value<QDBusObjectPath>().path());
             });
}

void GeoClueLocator::clientReady(const QString& clientPath)
{
    if (!m_timeout.isActive())
        return; // timed out meanwhile
    m_client = clientPath;
    m_bus.connect(kService, m_client, kClient, QStringLiteral("LocationUpdated"), this,
                  SLOT(locationUpdated(QDBusObjectPath, QDBusObjectPath)));
    // GeoClue refuses a client that does not name its application; the desktop's agent asks the user by it.
    callThen(m_bus, clientProperty(m_client, QStringLiteral("DesktopId"), QStringLiteral("org.lumaro.Lumaro")),
             this, [this](const QDBusMessage& named) {
                 if (isError(named))
                     return finish(named.errorMessage());
                 callThen(m_bus,
                          clientProperty(m_client, QStringLiteral("RequestedAccuracyLevel"), kCityAccuracy),
                          this, [this](const QDBusMessage& accuracy) {
                              if (isError(accuracy))
                                  return finish(accuracy.errorMessage());
                              callThen(m_bus,
                                       QDBusMessage::createMethodCall(kService, m_client, kClient,
                                                                      QStringLiteral("Start")),
                                       this, [this](const QDBusMessage& started) {
                                           if (isError(started))
                                               finish(started.errorMessage());
                                       });
                          });
             });
}

void GeoClueLocator::locationUpdated(const QDBusObjectPath&, const QDBusObjectPath& newPath)
{
    if (m_client.isEmpty())
        return;
    QDBusMessage get =
        QDBusMessage::createMethodCall(kService, newPath.path(), kProperties, QStringLiteral("GetAll"));
    get << kLocation;
    callThen(m_bus, get, this, [this](const QDBusMessage& reply) {
        if (m_client.isEmpty())
            return;
        if (isError(reply) || reply.arguments().isEmpty())
            return finish(reply.errorMessage());
        const QVariantMap properties = qdbus_cast<QVariantMap>(reply.arguments().constFirst());
        const double latitude = properties.value(QStringLiteral("Latitude")).toDouble();
        const double longitude = properties.value(QStringLiteral("Longitude")).toDouble();
        const double accuracy = properties.value(QStringLiteral("Accuracy")).toDouble();
        if (std::abs(latitude) > 90.0 || std::abs(longitude) > 180.0)
            return finish(tr("定位服务给出的位置无效"));
        finish({});
        Q_EMIT located(latitude, longitude, accuracy);
    });
}

void GeoClueLocator::finish(const QString& failure)
{
    m_timeout.stop();
    if (!m_client.isEmpty()) {
        m_bus.disconnect(kService, m_client, kClient, QStringLiteral("LocationUpdated"), this,
                         SLOT(locationUpdated(QDBusObjectPath, QDBusObjectPath)));
        m_bus.asyncCall(QDBusMessage::createMethodCall(kService, m_client, kClient, QStringLiteral("Stop")));
        m_client.clear();
    }
    if (!failure.isNull())
        Q_EMIT failed(failure.isEmpty() ? tr("定位失败") : failure);
}

} // namespace lumaro::platform

// In this object rather than the module's shared moc file, which every QObject of the module pulls in: only
// what uses it loads Qt D-Bus (lumaro-cli starts without it).
#include "moc_GeoClueLocator.cpp"
