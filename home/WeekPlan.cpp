// SPDX-License-Identifier: GPL-3.0-or-later
#include "home/WeekPlan.h"

#include "home/SolarCalculator.h"

#include <QSet>

#include <algorithm>

namespace lumaro::home {

QDate WeekPlan::weekStart(const QDate& day)
{
    return day.addDays(1 - day.dayOfWeek()); // Qt counts Monday as 1
}

QList<DayPlan> WeekPlan::build(const QDate& monday, const QList<TitledCard>& cards,
                               const std::optional<Place>& place, const std::optional<Forecast>& forecast)
{
    QList<DayPlan> days;
    for (int i = 0; i < 7; ++i) {
        DayPlan day;
        day.date = monday.addDays(i);
        if (place)
            day.sun = SolarCalculator::sunTimes(day.date, place->position);
        if (forecast)
            day.weather = forecast->day(day.date);
        days << day;
    }
    QSet<QString> seen;
    for (const TitledCard& titled : cards) {
        if (seen.contains(titled.card.path))
            continue;
        seen.insert(titled.card.path);
        for (DayPlan& day : days) {
            if (const int pictures = titled.card.picturesByDay.value(day.date))
                day.shoots << Shoot{titled.card.path, titled.title, pictures};
        }
    }
    for (DayPlan& day : days)
        std::stable_sort(day.shoots.begin(), day.shoots.end(),
                         [](const Shoot& a, const Shoot& b) { return a.pictures > b.pictures; });
    return days;
}

} // namespace lumaro::home
