// SPDX-License-Identifier: GPL-3.0-or-later
// What the user chose for the home page: the place whose sun and weather it shows, and whether to ask for a
// forecast at all.
#pragma once

#include "home/SunTimes.h"

#include <QString>
#include <QTimeZone>

#include <optional>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::home {

struct Place
{
    QString name;     // a city's name, or how it was found ("GeoClue")
    QString timeZone; // IANA name; empty: the system's zone
    GeoPosition position;

    // The zone its times are shown in: its own when known, else the system's.
    QTimeZone zone() const;

    bool operator==(const Place& other) const
    {
        return name == other.name && timeZone == other.timeZone &&
               position.latitude == other.position.latitude && position.longitude == other.position.longitude;
    }
};

// Keys "HomePage_Place" (JSON) and "HomePage_ForecastEnabled". No place until the user picks one; a stored
// value that cannot be read (or lies out of range) reads as no place. The forecast is on unless switched off.
// Any thread, as the store is.
class HomeSettings
{
public:
    static const QString placeKey;
    static const QString forecastKey;

    explicit HomeSettings(platform::SettingsStore& store);

    std::optional<Place> place() const;
    void setPlace(const Place& place);
    bool isForecastEnabled() const;
    void setForecastEnabled(bool enabled);

private:
    platform::SettingsStore& m_store;
};

} // namespace lumaro::home
