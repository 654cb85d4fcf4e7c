// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/QSettingsStore.h"

#include "platform/AppPaths.h"

#include <QDir>

namespace lumaro::platform {

QSettingsStore& QSettingsStore::shared()
{
    static QSettingsStore store(QDir(AppPaths::configDir()).filePath(QStringLiteral("lumaro.conf")));
    return store;
}

QSettingsStore::QSettingsStore(const QString& filePath)
    : m_settings(std::make_unique<QSettings>(filePath, QSettings::IniFormat))
{
}

std::optional<QVariant> QSettingsStore::value(const QString& key) const
{
    std::lock_guard lock(m_mutex);
    if (!m_settings->contains(key))
        return std::nullopt;
    return m_settings->value(key);
}

void QSettingsStore::setValue(const QString& key, const QVariant& value)
{
    std::lock_guard lock(m_mutex);
    m_settings->setValue(key, value);
}

std::optional<QByteArray> QSettingsStore::bytes(const QString& key) const
{
    const auto v = value(key);
    if (!v)
        return std::nullopt;
    return v->toByteArray();
}

std::optional<QString> QSettingsStore::string(const QString& key) const
{
    const auto v = value(key);
    if (!v)
        return std::nullopt;
    return v->toString();
}

std::optional<qint64> QSettingsStore::integer(const QString& key) const
{
    const auto v = value(key);
    if (!v)
        return std::nullopt;
    bool ok = false;
    const qint64 number = v->toLongLong(&ok);
    if (!ok)
        return std::nullopt;
    return number;
}

std::optional<bool> QSettingsStore::boolean(const QString& key) const
{
    const auto v = value(key);
    if (!v)
        return std::nullopt;
    // INI files hand booleans back as the strings "true"/"false".
    return v->toBool();
}

void QSettingsStore::setBytes(const QString& key, const QByteArray& value) { setValue(key, value); }
void QSettingsStore::setString(const QString& key, const QString& value) { setValue(key, value); }
void QSettingsStore::setInteger(const QString& key, qint64 value) { setValue(key, value); }
void QSettingsStore::setBoolean(const QString& key, bool value) { setValue(key, value); }

void QSettingsStore::remove(const QString& key)
{
    std::lock_guard lock(m_mutex);
    m_settings->remove(key);
}

bool QSettingsStore::contains(const QString& key) const
{
    std::lock_guard lock(m_mutex);
    return m_settings->contains(key);
}

void QSettingsStore::sync()
{
    std::lock_guard lock(m_mutex);
    m_settings->sync();
}

} // namespace lumaro::platform
