// SPDX-License-Identifier: GPL-3.0-or-later
// The home page's week, Monday first: per day the shoots, the sun's times and the weather.
#pragma once

#include "home/WeekPlan.h"

#include <QList>
#include <QTimeZone>
#include <QWidget>

class QLabel;

namespace lumaro::app {

// Main thread. Shows what it is given and forwards intent: the arrows ask for the previous or next week, a
// shoot's link asks to open its folder. The times are shown in `zone` (the place's).
class WeekCalendarView : public QWidget
{
    Q_OBJECT
public:
    explicit WeekCalendarView(QWidget* parent = nullptr);

    void showWeek(const QList<home::DayPlan>& days, const QTimeZone& zone, const QDate& today,
                  const QString& note);
    // What day `index` (0 = Monday) says, as plain text (tests read it).
    QString dayText(int index) const;
    QString note() const;

Q_SIGNALS:
    void weekStepRequested(int weeks); // −1, +1; 0 back to this week
    void openRequested(const QString& folder);

private:
    QLabel* m_range;
    QList<QLabel*> m_days;
    QLabel* m_note;
};

// One day's sun and weather in words, as the calendar and the page's headline write them.
QString sunLines(const home::SunTimes& sun, const QTimeZone& zone, const QString& separator);
QString weatherLine(const home::DayForecast& weather);
QString windowsText(const QList<home::SunWindow>& windows, const QTimeZone& zone);

} // namespace lumaro::app
