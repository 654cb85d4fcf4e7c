// SPDX-License-Identifier: GPL-3.0-or-later
#include "home/Forecast.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::home {

namespace {

// The service renamed its variables once ("weathercode" → "weather_code"); either spelling is read.
QJsonArray series(const QJsonObject& block, const char* name, const char* oldName = nullptr)
{
    QJsonValue value = block.value(QLatin1String(name));
    if (value.isUndefined() && oldName)
        value = block.value(QLatin1String(oldName));
    return value.toArray();
}

std::optional<double> number(const QJsonArray& values, qsizetype index)
{
    if (index >= values.size() || !values.at(index).isDouble())
        return std::nullopt;
    return values.at(index).toDouble();
}

// A figure that only makes sense within [lowest, highest] (a WMO code, a percentage): anything else the
// answer holds there, a huge or negative number included, counts as missing rather than being converted.
std::optional<int> wholeNumber(const QJsonArray& values, qsizetype index, int lowest, int highest)
{
    const std::optional<double> value = number(values, index);
    if (!value || !(*value >= lowest && *value <= highest))
        return std::nullopt;
    return int(std::lround(*value));
}

// The mean hourly cloud cover of each day ("2024-06-21T13:00" → "2024-06-21").
QHash<QString, int> dailyCloudCover(const QJsonObject& hourly)
{
    const QJsonArray times = hourly.value(QStringLiteral("time")).toArray();
    const QJsonArray cover = series(hourly, "cloud_cover", "cloudcover");
    QHash<QString, std::pair<double, int>> sums;
    for (qsizetype i = 0; i < times.size(); ++i) {
        const auto value = wholeNumber(cover, i, 0, 100);
        if (!value)
            continue;
        auto& sum = sums[times.at(i).toString().left(10)];
        sum.first += *value;
        ++sum.second;
    }
    QHash<QString, int> means;
    for (auto it = sums.cbegin(); it != sums.cend(); ++it)
        means.insert(it.key(), int(std::lround(it->first / it->second)));
    return means;
}

} // namespace

std::optional<DayForecast> Forecast::day(const QDate& date) const
{
    for (const DayForecast& forecast : days) {
        if (forecast.date == date)
            return forecast;
    }
    return std::nullopt;
}

std::optional<Forecast> Forecast::parse(const QByteArray& json, QString* error)
{
    const auto refuse = [error](const QString& why) -> std::optional<Forecast> {
        if (error)
            *error = why;
        return std::nullopt;
    };
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (!document.isObject())
        return refuse(QStringLiteral("not JSON: %1").arg(parseError.errorString()));
    const QJsonObject root = document.object();
    if (root.value(QStringLiteral("error")).toBool())
        return refuse(root.value(QStringLiteral("reason")).toString());
    const QJsonObject daily = root.value(QStringLiteral("daily")).toObject();
    const QJsonArray dates = daily.value(QStringLiteral("time")).toArray();
    if (dates.isEmpty())
        return refuse(QStringLiteral("no daily forecast in the answer"));

    const QJsonArray codes = series(daily, "weather_code", "weathercode");
    const QJsonArray highs = series(daily, "temperature_2m_max");
    const QJsonArray lows = series(daily, "temperature_2m_min");
    const QJsonArray rain = series(daily, "precipitation_probability_max");
    const QJsonArray wind = series(daily, "wind_speed_10m_max", "windspeed_10m_max");
    const QHash<QString, int> clouds = dailyCloudCover(root.value(QStringLiteral("hourly")).toObject());

    Forecast forecast;
    forecast.position = {root.value(QStringLiteral("latitude")).toDouble(),
                         root.value(QStringLiteral("longitude")).toDouble()};
    for (qsizetype i = 0; i < dates.size(); ++i) {
        DayForecast day;
        day.date = QDate::fromString(dates.at(i).toString(), Qt::ISODate);
        if (!day.date.isValid())
            return refuse(QStringLiteral("a day that is no date: %1").arg(dates.at(i).toString()));
        day.weatherCode = wholeNumber(codes, i, 0, 99).value_or(-1);
        day.temperatureMax = number(highs, i);
        day.temperatureMin = number(lows, i);
        day.precipitationChance = wholeNumber(rain, i, 0, 100);
        day.windSpeedMax = number(wind, i);
        const auto cloud = clouds.constFind(dates.at(i).toString());
        if (cloud != clouds.cend())
            day.cloudCover = *cloud;
        forecast.days << day;
    }
    return forecast;
}

QString weatherText(int code)
{
    // WMO 4677 as the forecast services reduce it.
    switch (code) {
    case 0:
        return QStringLiteral("晴");
    case 1:
        return QStringLiteral("大致晴朗");
    case 2:
        return QStringLiteral("局部多云");
    case 3:
        return QStringLiteral("阴");
    case 45:
    case 48:
        return QStringLiteral("雾");
    case 51:
    case 53:
    case 55:
    case 56:
    case 57:
        return QStringLiteral("毛毛雨");
    case 61:
    case 80:
        return QStringLiteral("小雨");
    case 63:
    case 81:
        return QStringLiteral("中雨");
    case 65:
    case 82:
        return QStringLiteral("大雨");
    case 66:
    case 67:
        return QStringLiteral("冻雨");
    case 71:
    case 77:
    case 85:
        return QStringLiteral("小雪");
    case 73:
        return QStringLiteral("中雪");
    case 75:
    case 86:
        return QStringLiteral("大雪");
    case 95:
        return QStringLiteral("雷阵雨");
    case 96:
    case 99:
        return QStringLiteral("雷阵雨伴冰雹");
    default:
        return QStringLiteral("天气未知");
    }
}

} // namespace lumaro::home
