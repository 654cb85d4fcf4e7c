// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/PrivateBus.h"

#include <QDBusConnection>
#include <QStandardPaths>

#include <utility>

namespace lumaro::testing {

PrivateBus::PrivateBus(QString connectionName) : m_connectionName(std::move(connectionName))
{
    if (QStandardPaths::findExecutable(QStringLiteral("dbus-daemon")).isEmpty())
        return;
    m_config.open();
    m_config.write("<busconfig><type>session</type><listen>unix:dir=" + m_socketFolder.path().toUtf8() +
                   "</listen>"
                   "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                   "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    m_config.flush();
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + m_config.fileName(), QStringLiteral("--nofork"),
                    QStringLiteral("--print-address")});
    if (m_daemon.waitForReadyRead(10000))
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
    m_daemon.kill();
    m_daemon.waitForFinished();
}

} // namespace lumaro::testing
