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
    const QString keyring = QStandardPaths::findExecutable(QStringLiteral("gnome-keyring-daemon"));
    if (keyring.isEmpty()) {
        m_whyNot = "gnome-keyring-daemon is not installed";
        return;
    }
    // The bus starts nothing on demand: libsecret's first call would otherwise start a second, locked keyring
    // before ours owns the name, and ours would give way to it.
    if (m_bus.address().isEmpty()) {
        m_whyNot = "no private session bus (dbus-daemon)";
        return;
    }
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toUtf8());
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
    m_keyring.kill();
    m_keyring.waitForFinished();
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_previousBus);
}

} // namespace lumaro::testing
