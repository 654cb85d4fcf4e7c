// SPDX-License-Identifier: GPL-3.0-or-later
#include "home/CityList.h"

#include <QFile>
#include <QTextStream>

namespace lumaro::home {

namespace {

// "+DDMM", "+DDMMSS" (latitude) or "+DDDMM", "+DDDMMSS" (longitude) in degrees.
std::optional<double> sexagesimal(QStringView text, int degreeDigits)
{
    const qsizetype digits = text.size() - 1;
    if (digits != degreeDigits + 2 && digits != degreeDigits + 4)
        return std::nullopt;
    if (text.front() != u'+' && text.front() != u'-')
        return std::nullopt;
    for (qsizetype i = 1; i < text.size(); ++i) {
        if (!text.at(i).isDigit())
            return std::nullopt;
    }
    const double whole = text.mid(1, degreeDigits).toInt();
    const int minutes = text.mid(1 + degreeDigits, 2).toInt();
    const int seconds = digits == degreeDigits + 4 ? text.mid(3 + degreeDigits, 2).toInt() : 0;
    if (minutes >= 60 || seconds >= 60)
        return std::nullopt;
    const double value = whole + minutes / 60.0 + seconds / 3600.0;
    return text.front() == u'-' ? -value : value;
}

QString comparable(const QString& name)
{
    return QString(name).replace(QLatin1Char('_'), QLatin1Char(' ')).simplified().toCaseFolded();
}

} // namespace

QString CityList::systemFile()
{
    return QStringLiteral("/usr/share/zoneinfo/zone1970.tab");
}

std::optional<GeoPosition> CityList::parseCoordinates(const QString& text)
{
    qsizetype split = -1;
    for (qsizetype i = 1; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('+') || text.at(i) == QLatin1Char('-')) {
            split = i;
            break;
        }
    }
    if (split < 0)
        return std::nullopt;
    const auto latitude = sexagesimal(QStringView(text).left(split), 2);
    const auto longitude = sexagesimal(QStringView(text).mid(split), 3);
    if (!latitude || !longitude || std::abs(*latitude) > 90.0 || std::abs(*longitude) > 180.0)
        return std::nullopt;
    return GeoPosition{*latitude, *longitude};
}

QList<City> CityList::read(const QString& file)
{
    QFile table(file);
    if (!table.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QList<City> cities;
    QTextStream lines(&table);
    QString line;
    while (lines.readLineInto(&line)) {
        if (line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList fields = line.split(QLatin1Char('\t'));
        if (fields.size() < 3)
            continue;
        const auto position = parseCoordinates(fields.at(1));
        const QString zone = fields.at(2).trimmed();
        const QString name =
            zone.section(QLatin1Char('/'), -1).replace(QLatin1Char('_'), QLatin1Char(' ')).trimmed();
        if (!position || name.isEmpty()) // a zone without its city's name could not be chosen
            continue;
        cities << City{name, zone, *position};
    }
    return cities;
}

std::optional<City> CityList::find(const QList<City>& cities, const QString& name)
{
    const QString wanted = comparable(name);
    if (wanted.isEmpty())
        return std::nullopt;
    for (const City& city : cities) {
        if (comparable(city.name) == wanted || comparable(city.timeZone) == wanted)
            return city;
    }
    return std::nullopt;
}

} // namespace lumaro::home
