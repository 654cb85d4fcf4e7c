// SPDX-License-Identifier: GPL-3.0-or-later
// A real Secret Service for a test: GNOME Keyring, its login keyring unlocked, on a session bus of the test's
// own, so the user's keyring is never touched. The test process talks to it through DBUS_SESSION_BUS_ADDRESS
// while it lives.
#pragma once

#include "tests/platform/PrivateBus.h"

#include <QProcess>

#include <string>

namespace lumaro::testing {

class PrivateKeyring
{
public:
    PrivateKeyring();
    ~PrivateKeyring();
    PrivateKeyring(const PrivateKeyring&) = delete;
    PrivateKeyring& operator=(const PrivateKeyring&) = delete;

    // Empty once the keyring answers; otherwise why it cannot run here, for the test's skip.
    const std::string& whyNot() const { return m_whyNot; }

private:
    void start();

    PrivateBus m_bus{QStringLiteral("keyring")};
    QProcess m_keyring;
    QByteArray m_previousBus;
    std::string m_whyNot;
};

} // namespace lumaro::testing
