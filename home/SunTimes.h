// SPDX-License-Identifier: GPL-3.0-or-later
// The sun's day at one place: sunrise, sunset, solar noon, and the golden and blue hours a photographer plans
// by.
#pragma once

#include <QDate>
#include <QDateTime>
#include <QList>

#include <optional>

namespace lumaro::home {

// Where the sun is watched from; latitude −90…90 (north positive), longitude −180…180 (east positive).
struct GeoPosition
{
    double latitude = 0;
    double longitude = 0;
};

// Whether the sun crosses the horizon that day: it may stay up (midnight sun) or down (polar night).
enum class SunCourse
{
    risesAndSets,
    alwaysUp,
    alwaysDown
};

// A stretch of the day with the sun in a band of elevation. A missing start means the stretch began before
// the solar day (the sun never left the band overnight); a missing end, that it runs on past it.
struct SunWindow
{
    std::optional<QDateTime> start;
    std::optional<QDateTime> end;

    bool operator==(const SunWindow&) const = default;
};

// Times are UTC instants; the solar day is the one whose noon falls on `date` at the place. Golden hour: the
// sun's centre between 6° above and 4° below the horizon; blue hour: between 4° and 6° below.
struct SunTimes
{
    QDate date;
    GeoPosition position;
    SunCourse course = SunCourse::risesAndSets;
    QDateTime solarNoon;
    double noonElevation = 0; // degrees, refraction left out
    std::optional<QDateTime> sunrise;
    std::optional<QDateTime> sunset;
    QList<SunWindow> goldenHours; // in the order of the day: morning, then evening
    QList<SunWindow> blueHours;
};

} // namespace lumaro::home
