// SPDX-License-Identifier: GPL-3.0-or-later
// A settings store held in memory, for tests that need a fresh, isolated store per case.
#pragma once

#include "platform/SettingsStore.h"

#include <QVariant>
#include <QVariantMap>

#include <mutex>

namespace lumaro::platform {

class MemorySettingsStore final : public SettingsStore
{
public:
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

private:
    std::optional<QVariant> value(const QString& key) const;
    void setValue(const QString& key, const QVariant& value);

    mutable std::mutex m_mutex;
    QVariantMap m_values;
};

} // namespace lumaro::platform
