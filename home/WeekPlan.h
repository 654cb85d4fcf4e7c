// SPDX-License-Identifier: GPL-3.0-or-later
// The home page's week: per day the shoots found in the folders shown, the sun's times and the weather.
#pragma once

#include "browse/folders/FolderCard.h"
#include "home/Forecast.h"
#include "home/HomeSettings.h"
#include "home/SunTimes.h"

#include <QDate>
#include <QList>
#include <QString>

#include <optional>

namespace lumaro::home {

struct Shoot
{
    QString folder;
    QString title;
    int pictures = 0;
};

struct DayPlan
{
    QDate date;
    QList<Shoot> shoots;                // most pictures first
    std::optional<SunTimes> sun;        // with a place chosen
    std::optional<DayForecast> weather; // when the forecast has that day
};

// A card as the home page shows it: the folder's card and the title on it.
struct TitledCard
{
    browse::FolderCard card;
    QString title;
};

// Pure functions, any thread.
class WeekPlan
{
public:
    // The Monday of `day`'s week.
    static QDate weekStart(const QDate& day);
    // Seven days from `monday`. A folder shown on several shelves counts once (its first title); a day's
    // shoots come from the days its pictures were taken (EXIF capture time, else the file's time).
    static QList<DayPlan> build(const QDate& monday, const QList<TitledCard>& cards,
                                const std::optional<Place>& place, const std::optional<Forecast>& forecast);
};

} // namespace lumaro::home
