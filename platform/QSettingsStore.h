// SPDX-License-Identifier: GPL-3.0-or-later
// The settings store kept by QSettings in ~/.config/lumaro/lumaro.conf (XDG_CONFIG_HOME honoured).
#pragma once

#include "platform/SettingsStore.h"

#include <QSettings>

#include <memory>
#include <mutex>

namespace lumaro::platform {

class QSettingsStore final : public SettingsStore
{
public:
    // The process-wide store of the user's settings.
    static QSettingsStore& shared();
    // A store over an explicit file, for tests and tools.
    explicit QSettingsStore(const QString& filePath);

    std::optional<QByteArray> bytes(const QString& key) const override;
    std::optional<QString> string(const QString& key) const override;
    std::optional<qint64> integer(const QString& key) const override;
    std::optional<bool> boolean(const QString& key) const override;

    void setBytes(const QString& key, const QByteArray& value) override;
    void setString(const QString& key, const QString& value) override;
    void setInteger(const QString& key, qint64 value) override;
    void setBoolean(const QString& key, bool value) override;
    void remove(const QString& key) override;
    bool contains(const QString& key) const override;

    // Writes pending changes to disk now (QSettings otherwise writes on destruction or idle).
    void sync();

private:
    std::optional<QVariant> value(const QString& key) const;
    void setValue(const QString& key, const QVariant& value);

    mutable std::mutex m_mutex;
    std::unique_ptr<QSettings> m_settings;
};

} // namespace lumaro::platform
