// SPDX-License-Identifier: GPL-3.0-or-later
// A few days of weather at one place, as the home page's calendar shows it.
#pragma once

#include "home/SunTimes.h"

#include <QByteArray>
#include <QDate>
#include <QList>
#include <QMetaType>
#include <QString>

#include <optional>

namespace lumaro::home {

struct DayForecast
{
    QDate date;
    int weatherCode = -1;                 // WMO code as the service gives it; −1 when missing
    std::optional<double> temperatureMin; // °C
    std::optional<double> temperatureMax;
    std::optional<int> precipitationChance; // %
    std::optional<int> cloudCover;          // %, the day's mean
    std::optional<double> windSpeedMax;     // km/h
};

struct Forecast
{
    GeoPosition position;
    double fetchedAt = 0; // seconds since 1970 on the client's clock
    QList<DayForecast> days;

    std::optional<DayForecast> day(const QDate& date) const;

    // Reads the service's answer (Open-Meteo's JSON: "daily" arrays by day, "hourly" cloud cover). nullopt
    // when it is no such answer; `error` then says why.
    static std::optional<Forecast> parse(const QByteArray& json, QString* error = nullptr);
};

// The weather in a word or two, in Chinese as the window speaks it ("晴", "小雨"…).
QString weatherText(int weatherCode);

} // namespace lumaro::home

Q_DECLARE_METATYPE(lumaro::home::Forecast)
