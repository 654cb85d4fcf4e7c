// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli sun: sunrise, sunset, golden and blue hours of a day at a place, worked out on this machine.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "home/CityList.h"
#include "home/HomeSettings.h"
#include "home/SolarCalculator.h"
#include "platform/QSettingsStore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

namespace {

std::optional<double> coordinate(const QString& text, double limit)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !std::isfinite(value) || std::abs(value) > limit)
        return std::nullopt;
    return value;
}

QString localTime(const std::optional<QDateTime>& when, const QTimeZone& zone, const QDate& day)
{
    if (!when)
        return QStringLiteral("…");
    const QDateTime local = when->toTimeZone(zone);
    const QString time = local.toString(QStringLiteral("HH:mm"));
    if (local.date() == day)
        return time;
    return time + (local.date() < day ? QStringLiteral(" (day before)") : QStringLiteral(" (next day)"));
}

QJsonValue isoTime(const std::optional<QDateTime>& when, const QTimeZone& zone)
{
    return when ? QJsonValue(when->toTimeZone(zone).toString(Qt::ISODate)) : QJsonValue(QJsonValue::Null);
}

QJsonArray windowsJson(const QList<home::SunWindow>& windows, const QTimeZone& zone)
{
    QJsonArray array;
    for (const home::SunWindow& window : windows)
        array.append(QJsonObject{{QStringLiteral("start"), isoTime(window.start, zone)},
                                 {QStringLiteral("end"), isoTime(window.end, zone)}});
    return array;
}

QString courseName(home::SunCourse course)
{
    switch (course) {
    case home::SunCourse::alwaysUp:
        return QStringLiteral("always up");
    case home::SunCourse::alwaysDown:
        return QStringLiteral("always down");
    case home::SunCourse::risesAndSets:
        break;
    }
    return QStringLiteral("rises and sets");
}

void printJson(const home::SunTimes& sun, const home::Place& place, const QTimeZone& zone)
{
    const QJsonObject object{
        {QStringLiteral("date"), sun.date.toString(Qt::ISODate)},
        {QStringLiteral("place"), place.name},
        {QStringLiteral("latitude"), place.position.latitude},
        {QStringLiteral("longitude"), place.position.longitude},
        {QStringLiteral("timeZone"), QString::fromUtf8(zone.id())},
        {QStringLiteral("sun"), courseName(sun.course)},
        {QStringLiteral("sunrise"), isoTime(sun.sunrise, zone)},
        {QStringLiteral("solarNoon"), isoTime(sun.solarNoon, zone)},
        {QStringLiteral("sunset"), isoTime(sun.sunset, zone)},
        {QStringLiteral("noonElevation"), std::round(sun.noonElevation * 10.0) / 10.0},
        {QStringLiteral("goldenHours"), windowsJson(sun.goldenHours, zone)},
        {QStringLiteral("blueHours"), windowsJson(sun.blueHours, zone)},
    };
    standardOutput() << QJsonDocument(object).toJson(QJsonDocument::Compact) << "\n";
}

void printWindows(QTextStream& out, const QString& label, const QList<home::SunWindow>& windows,
                  const QTimeZone& zone, const QDate& day)
{
    if (windows.isEmpty()) {
        out << label << "none\n";
        return;
    }
    for (const home::SunWindow& window : windows)
        out << label << localTime(window.start, zone, day) << " - " << localTime(window.end, zone, day)
            << "\n";
}

void printPlain(const home::SunTimes& sun, const home::Place& place, const QTimeZone& zone)
{
    QTextStream& out = standardOutput();
    const QDateTime noon = sun.solarNoon.toTimeZone(zone);
    out << "date         " << sun.date.toString(Qt::ISODate) << "\n";
    out << "place        " << (place.name.isEmpty() ? QStringLiteral("-") : place.name) << " ("
        << QString::number(place.position.latitude, 'f', 4) << ", "
        << QString::number(place.position.longitude, 'f', 4) << ")\n";
    const int offset = zone.offsetFromUtc(noon) / 60;
    out << "time zone    " << QString::fromUtf8(zone.id()) << " (UTC" << (offset < 0 ? "-" : "+")
        << QStringLiteral("%1:%2")
               .arg(std::abs(offset) / 60, 2, 10, QLatin1Char('0'))
               .arg(std::abs(offset) % 60, 2, 10, QLatin1Char('0'))
        << ")\n";
    if (sun.course == home::SunCourse::alwaysUp)
        out << "sunrise      none: the sun stays up all day\n";
    else if (sun.course == home::SunCourse::alwaysDown)
        out << "sunrise      none: the sun stays below the horizon all day\n";
    else
        out << "sunrise      " << localTime(sun.sunrise, zone, sun.date) << "\n";
    out << "solar noon   " << localTime(sun.solarNoon, zone, sun.date) << " (sun at "
        << QString::number(sun.noonElevation, 'f', 1) << "°)\n";
    if (sun.course == home::SunCourse::risesAndSets)
        out << "sunset       " << localTime(sun.sunset, zone, sun.date) << "\n";
    printWindows(out, QStringLiteral("golden hour  "), sun.goldenHours, zone, sun.date);
    printWindows(out, QStringLiteral("blue hour    "), sun.blueHours, zone, sun.date);
    out.flush();
}

} // namespace

int runSun(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("sun"),
        QStringLiteral("Sunrise, sunset, golden hour (sun between 6° and -4°) and blue hour (-4° to "
                       "-6°) of a day, worked out on this machine. Times are given in the city's time "
                       "zone, else in this system's. Without a place, the home page's is used."));
    line.addOption(
        {QStringLiteral("date"), QStringLiteral("The day (default: today)."), QStringLiteral("YYYY-MM-DD")});
    line.addOption(
        {QStringLiteral("lat"), QStringLiteral("Latitude in degrees, north positive."), QStringLiteral("X")});
    line.addOption(
        {QStringLiteral("lon"), QStringLiteral("Longitude in degrees, east positive."), QStringLiteral("Y")});
    line.addOption({QStringLiteral("city"),
                    QStringLiteral("A city of the system's time-zone list (\"Paris\", \"Buenos Aires\", "
                                   "\"Asia/Shanghai\")."),
                    QStringLiteral("NAME")});
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    if (!line.positional(0) || !line.positional(0)->isEmpty())
        return line.usageError(QStringLiteral("sun takes no positional arguments"));

    const bool byCoordinates = line.isSet(QStringLiteral("lat")) || line.isSet(QStringLiteral("lon"));
    const bool byCity = line.isSet(QStringLiteral("city"));
    if (byCoordinates && byCity)
        return line.usageError(QStringLiteral("give either --city or --lat and --lon, not both"));

    home::Place place;
    if (byCoordinates) {
        if (!line.isSet(QStringLiteral("lat")) || !line.isSet(QStringLiteral("lon")))
            return line.usageError(QStringLiteral("--lat and --lon go together"));
        const auto latitude = coordinate(line.value(QStringLiteral("lat")), 90.0);
        if (!latitude)
            return line.fail(QStringLiteral("latitude \"%1\" is not a number between -90 and 90")
                                 .arg(line.value(QStringLiteral("lat"))),
                             exitUsage);
        const auto longitude = coordinate(line.value(QStringLiteral("lon")), 180.0);
        if (!longitude)
            return line.fail(QStringLiteral("longitude \"%1\" is not a number between -180 and 180")
                                 .arg(line.value(QStringLiteral("lon"))),
                             exitUsage);
        place.position = {*latitude, *longitude};
    } else if (byCity) {
        const QString name = line.value(QStringLiteral("city"));
        const auto city = home::CityList::find(home::CityList::read(), name);
        if (!city)
            return line.fail(
                QStringLiteral("unknown city \"%1\" (the cities are those of %2; or give --lat and --lon)")
                    .arg(name, home::CityList::systemFile()),
                exitUsage);
        place = {city->name, city->timeZone, city->position};
    } else {
        const auto chosen = home::HomeSettings(platform::QSettingsStore::shared()).place();
        if (!chosen)
            return line.usageError(
                QStringLiteral("no place: give --city or --lat and --lon (or choose a place on "
                               "the home page)"));
        place = *chosen;
    }

    const QTimeZone zone = place.zone();
    QDate date = QDateTime::currentDateTime().toTimeZone(zone).date();
    if (line.isSet(QStringLiteral("date"))) {
        const QString text = line.value(QStringLiteral("date"));
        date = QDate::fromString(text, QStringLiteral("yyyy-MM-dd"));
        if (!date.isValid() || date.year() < 1800 || date.year() > 2200)
            return line.fail(
                QStringLiteral("date \"%1\" is not a day written YYYY-MM-DD (years 1800 to 2200)").arg(text),
                exitUsage);
    }

    const home::SunTimes sun = home::SolarCalculator::sunTimes(date, place.position);
    if (line.json())
        printJson(sun, place, zone);
    else
        printPlain(sun, place, zone);
    return exitOk;
}

} // namespace lumaro::cli
