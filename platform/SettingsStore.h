// SPDX-License-Identifier: GPL-3.0-or-later
// The user defaults: a flat store of keys ("LMR_ImagesPerRow", "HotkeyManager_Hotkeys") to small values.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumaro::platform {

// Implementations are safe to call from any thread. A missing key reads as std::nullopt.
class SettingsStore
{
public:
    virtual ~SettingsStore() = default;

    virtual std::optional<QByteArray> bytes(const QString& key) const = 0;
    virtual std::optional<QString> string(const QString& key) const = 0;
    virtual std::optional<qint64> integer(const QString& key) const = 0;
    virtual std::optional<bool> boolean(const QString& key) const = 0;

    virtual void setBytes(const QString& key, const QByteArray& value) = 0;
    virtual void setString(const QString& key, const QString& value) = 0;
    virtual void setInteger(const QString& key, qint64 value) = 0;
    virtual void setBoolean(const QString& key, bool value) = 0;
    virtual void remove(const QString& key) = 0;
    virtual bool contains(const QString& key) const = 0;
};

} // namespace lumaro::platform
