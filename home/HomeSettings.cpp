// SPDX-License-Identifier: GPL-3.0-or-later
#include "home/HomeSettings.h"

#include "platform/SettingsStore.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace lumaro::home {

QTimeZone Place::zone() const
{
    const QTimeZone own(timeZone.toUtf8());
    return own.isValid() ? own : QTimeZone::systemTimeZone();
}

const QString HomeSettings::placeKey = QStringLiteral("HomePage_Place");
const QString HomeSettings::forecastKey = QStringLiteral("HomePage_ForecastEnabled");

HomeSettings::HomeSettings(platform::SettingsStore& store) : m_store(store) {}

std::optional<Place> HomeSettings::place() const
{
    const auto stored = m_store.bytes(placeKey);
    if (!stored)
        return std::nullopt;
    const QJsonObject object = QJsonDocument::fromJson(*stored).object();
    const QJsonValue latitude = object.value(QStringLiteral("latitude"));
    const QJsonValue longitude = object.value(QStringLiteral("longitude"));
    if (!latitude.isDouble() || !longitude.isDouble() || std::abs(latitude.toDouble()) > 90.0 ||
        std::abs(longitude.toDouble()) > 180.0)
        return std::nullopt;
    return Place{object.value(QStringLiteral("name")).toString(),
                 object.value(QStringLiteral("timeZone")).toString(),
                 GeoPosition{latitude.toDouble(), longitude.toDouble()}};
}

void HomeSettings::setPlace(const Place& place)
{
    const QJsonObject object{{QStringLiteral("name"), place.name},
                             {QStringLiteral("timeZone"), place.timeZone},
                             {QStringLiteral("latitude"), place.position.latitude},
                             {QStringLiteral("longitude"), place.position.longitude}};
    m_store.setBytes(placeKey, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

bool HomeSettings::isForecastEnabled() const
{
    return m_store.boolean(forecastKey).value_or(true);
}

void HomeSettings::setForecastEnabled(bool enabled)
{
    m_store.setBoolean(forecastKey, enabled);
}

} // namespace lumaro::home
