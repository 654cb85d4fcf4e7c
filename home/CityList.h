// SPDX-License-Identifier: GPL-3.0-or-later
// The cities a place can be chosen from without a network: one per time zone, from the system's time-zone
// data.
#pragma once

#include "home/SunTimes.h"

#include <QList>
#include <QString>

#include <optional>

namespace lumaro::home {

struct City
{
    QString name;     // "Buenos Aires": the zone's last part, underscores as spaces
    QString timeZone; // "America/Argentina/Buenos_Aires"
    GeoPosition position;
};

// Read from tzdata's zone1970.tab (ISO 6709 coordinates of each zone's main city). A line that cannot be read
// is left out; a missing file gives an empty list. Any thread.
class CityList
{
public:
    static QString systemFile(); // /usr/share/zoneinfo/zone1970.tab
    static QList<City> read(const QString& file = systemFile());
    // One line's coordinates, "+404251-0740023" or "+4230+00131"; nullopt when malformed or out of range.
    static std::optional<GeoPosition> parseCoordinates(const QString& text);
    // The city called `name`: its name or its zone, case and underscores ignored.
    static std::optional<City> find(const QList<City>& cities, const QString& name);
};

} // namespace lumaro::home
