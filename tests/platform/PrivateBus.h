// SPDX-License-Identifier: GPL-3.0-or-later
// A session bus of the test's own (dbus-daemon), so stand-ins for desktop services can own their names
// without touching the machine's bus. It starts no service on demand: a call to a name nobody owns yet fails
// instead of starting the machine's own service (which would race the test's).
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>
#include <QTemporaryFile>

namespace lumaro::testing {

class PrivateBus
{
public:
    // `connectionName`: the named connection the test opens to it, closed again when the bus goes.
    explicit PrivateBus(QString connectionName);
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    // Empty when dbus-daemon is missing or did not start: the test skips.
    QString address() const { return m_address; }

private:
    QString m_connectionName;
    QTemporaryDir m_socketFolder; // the bus's socket, gone with the test: a killed daemon cannot remove it
    QTemporaryFile m_config;
    QProcess m_daemon;
    QString m_address;
};

} // namespace lumaro::testing
