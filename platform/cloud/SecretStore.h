// SPDX-License-Identifier: GPL-3.0-or-later
// Secrets of the storage accounts, kept in the desktop's keyring (the Secret Service: GNOME Keyring,
// KWallet), never in a file of ours.
#pragma once

#include <QString>

#include <optional>

namespace lumaro::platform {

// Blocking (a D-Bus round trip); not for the main thread of a window at every paint, fine on a click.
class SecretStore
{
public:
    static bool store(const QString& account, const QString& secret, QString* error = nullptr);
    // nullopt: no secret for the account, or no keyring (then `error` says why).
    static std::optional<QString> lookup(const QString& account, QString* error = nullptr);
    static bool clear(const QString& account, QString* error = nullptr);
};

} // namespace lumaro::platform
