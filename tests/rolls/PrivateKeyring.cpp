// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/rolls/PrivateKeyring.h"

#include "platform/cloud/SecretStore.h"

#include <QDeadlineTimer>
#include <QStandardPaths>

namespace lumaro::testing {

PrivateKeyring::PrivateKeyring() : m_previousBus(qgetenv("DBUS_SESSION_BUS_ADDRESS"))
{
    start();
}

void PrivateKeyring::start()
{
    const QString dbus = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
    const QString keyring = QStandardPaths::findExecutable(QStringLiteral("gnome-keyring-daemon"));
    if (dbus.isEmpty() || keyring.isEmpty()) {
        m_whyNot = "dbus-daemon or gnome-keyring-daemon is not installed";
        return;
    }
    // A bus that starts no services on demand: the first call to the Secret Service would otherwise start a
    // second, locked keyring before ours owns the name, and ours would give way to it.
    m_busConfig.open();
    m_busConfig.write("<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
                      "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                      "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    m_busConfig.flush();
    m_bus.start(dbus, {QStringLiteral("--config-file=") + m_busConfig.fileName(), QStringLiteral("--nofork"),
                       QStringLiteral("--print-address=1")});
    if (!m_bus.waitForReadyRead(10000)) {
        m_whyNot = "no private session bus";
        return;
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.readLine().trimmed());
    m_keyring.start(keyring, {QStringLiteral("--foreground"), QStringLiteral("--components=secrets"),
                              QStringLiteral("--unlock")});
    // The password on standard input opens the login keyring, made on first use.
    m_keyring.write("keyring-of-the-test\n");
    m_keyring.closeWriteChannel();
    // The daemon answers once it owns its name on the bus; a first store proves it.
    QString error;
    const QDeadlineTimer deadline(20000);
    while (!platform::SecretStore::store(QStringLiteral("probe"), QStringLiteral("x"), &error) &&
           !deadline.hasExpired())
        m_keyring.waitForReadyRead(200);
    if (!platform::SecretStore::lookup(QStringLiteral("probe")))
        m_whyNot = "GNOME Keyring did not start: " + error.toStdString();
}

PrivateKeyring::~PrivateKeyring()
{
    for (QProcess* process : {&m_keyring, &m_bus}) {
        process->kill();
        process->waitForFinished();
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_previousBus);
}

} // namespace lumaro::testing
