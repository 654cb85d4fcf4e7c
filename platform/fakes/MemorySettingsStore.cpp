// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/fakes/MemorySettingsStore.h"

namespace lumaro::platform {

std::optional<QVariant> MemorySettingsStore::value(const QString& key) const
{
    std::lock_guard lock(m_mutex);
    const auto it = m_values.constFind(key);
    if (it == m_values.constEnd())
        return std::nullopt;
    return *it;
}

void MemorySettingsStore::setValue(const QString& key, const QVariant& value)
{
    std::lock_guard lock(m_mutex);
    m_values.insert(key, value);
}

std::optional<QByteArray> MemorySettingsStore::bytes(const QString& key) const
{
    const auto v = value(key);
    return v ? std::optional(v->toByteArray()) : std::nullopt;
}

std::optional<QString> MemorySettingsStore::string(const QString& key) const
{
    const auto v = value(key);
    return v ? std::optional(v->toString()) : std::nullopt;
}

std::optional<qint64> MemorySettingsStore::integer(const QString& key) const
{
    const auto v = value(key);
    return v ? std::optional(v->toLongLong()) : std::nullopt;
}

std::optional<bool> MemorySettingsStore::boolean(const QString& key) const
{
    const auto v = value(key);
    return v ? std::optional(v->toBool()) : std::nullopt;
}

void MemorySettingsStore::setBytes(const QString& key, const QByteArray& value) { setValue(key, value); }
void MemorySettingsStore::setString(const QString& key, const QString& value) { setValue(key, value); }
void MemorySettingsStore::setInteger(const QString& key, qint64 value) { setValue(key, value); }
void MemorySettingsStore::setBoolean(const QString& key, bool value) { setValue(key, value); }

void MemorySettingsStore::remove(const QString& key)
{
    std::lock_guard lock(m_mutex);
    m_values.remove(key);
}

bool MemorySettingsStore::contains(const QString& key) const
{
    std::lock_guard lock(m_mutex);
    return m_values.contains(key);
}

} // namespace lumaro::platform
