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
    // What the daemon says goes to the test's own output, where a failure shows it; a pipe nobody reads could
    // also fill and stall the daemon mid-answer.
    m_keyring.setProcessChannelMode(QProcess::ForwardedChannels);
    m_keyring.start(keyring, {QStringLiteral("--foreground"), QStringLiteral("--components=secrets"),
                              QStringLiteral("--unlock")});
    // The password on standard input opens the login keyring, made on first use.
    m_keyring.write("keyring-of-the-test\n");
    m_keyring.closeWriteChannel();
    // The daemon answers once it owns its name on the bus and its login keyring is open; a stored and read
    // back probe proves both.
    QString error;
    const auto answers = [&error] {
        return platform::SecretStore::store(QStringLiteral("probe"), QStringLiteral("x"), &error) &&
               platform::SecretStore::lookup(QStringLiteral("probe"), &error).has_value();
    };
    const QDeadlineTimer deadline(20000);
    while (!answers()) {
        if (deadline.hasExpired()) {
            m_whyNot = "GNOME Keyring did not start: " + error.toStdString();
            return;
        }
        if (m_keyring.waitForFinished(200)) {
            m_whyNot = "GNOME Keyring ended at start (exit code " + std::to_string(m_keyring.exitCode()) + ")";
            return;
        }
    }
    platform::SecretStore::clear(QStringLiteral("probe"), &error);
}

PrivateKeyring::~PrivateKeyring()
{
    m_keyring.kill();
    m_keyring.waitForFinished();
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_previousBus);
}

} // namespace lumaro::testing
