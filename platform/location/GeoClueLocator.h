// SPDX-License-Identifier: GPL-3.0-or-later
// Where this machine is, asked once of GeoClue2 over D-Bus (the desktop's location service).
#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QTimer>

namespace lumaro::platform {

// Main thread; never blocks. locate() answers with one of located() or failed(): GeoClue missing, the user's
// desktop refusing (GeoClue's agent asks the user, and may say no), or no fix within the time given. City
// accuracy is asked for: sun times need no more. The client is stopped once answered.
class GeoClueLocator : public QObject
{
    Q_OBJECT
public:
    explicit GeoClueLocator(QObject* parent = nullptr); // the system bus
    GeoClueLocator(const QString& busAddress, QObject* parent);
    ~GeoClueLocator() override;

    // Whether GeoClue2 runs or can be started on the bus.
    bool isAvailable() const;
    void locate(int timeoutMs = 30'000);

Q_SIGNALS:
    void located(double latitude, double longitude, double accuracyMetres);
    void failed(const QString& reason);

private Q_SLOTS:
    void locationUpdated(const QDBusObjectPath& oldPath, const QDBusObjectPath& newPath);

private:
    void clientReady(const QString& clientPath);
    void finish(const QString& failure);

    QDBusConnection m_bus;
    QString m_client; // the client's object path while a request runs
    QTimer m_timeout;
};

} // namespace lumaro::platform
