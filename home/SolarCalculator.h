// SPDX-License-Identifier: GPL-3.0-or-later
// Sun times worked out on this machine with NOAA's solar-position equations (no network).
#pragma once

#include "home/SunTimes.h"

#include <QDateTime>

#include <optional>

namespace lumaro::home {

// Pure functions, any thread. The equations (Meeus' low-precision solar coordinates, as NOAA's calculator
// uses them) are good to about a minute between 1800 and 2100 at latitudes below ±72°; near the poles a time
// can move by a few minutes, since there the sun crosses a given elevation at a grazing angle. Sunrise and
// sunset are the upper limb at the horizon with standard refraction (the centre at −0.833°).
class SolarCalculator
{
public:
    static SunTimes sunTimes(const QDate& date, const GeoPosition& position);

    // When the sun's centre passes `elevation` degrees on the solar day of `date`, rising in the morning or
    // setting in the evening; nullopt when it does not that day.
    static std::optional<QDateTime> crossing(const QDate& date, const GeoPosition& position, double elevation,
                                             bool rising);
    // The sun's elevation in degrees (no refraction) at `when`.
    static double elevation(const QDateTime& when, const GeoPosition& position);
};

} // namespace lumaro::home
