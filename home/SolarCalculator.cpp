// SPDX-License-Identifier: GPL-3.0-or-later
#include "home/SolarCalculator.h"

#include <algorithm>

#include <cmath>
#include <numbers>

namespace lumaro::home {

namespace {

constexpr double kSunriseElevation = -0.833; // upper limb on the horizon, standard refraction
constexpr int kRefinements = 4;              // each pass re-evaluates the sun at the previous estimate

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180.0;
}

double degrees(double radians)
{
    return radians * 180.0 / std::numbers::pi;
}

// Where the sun stands in the sky's coordinates at one instant: declination in degrees and the equation of
// time in minutes (true solar time minus mean solar time).
struct SolarState
{
    double declination = 0;
    double equationOfTime = 0;
};

SolarState solarState(double julianDay)
{
    const double t = (julianDay - 2451545.0) / 36525.0; // Julian centuries since J2000.0
    const double meanLongitude = std::fmod(280.46646 + t * (36000.76983 + t * 0.0003032), 360.0);
    const double meanAnomaly = 357.52911 + t * (35999.05029 - 0.0001537 * t);
    const double eccentricity = 0.016708634 - t * (0.000042037 + 0.0000001267 * t);
    const double m = radians(meanAnomaly);
    const double centre = std::sin(m) * (1.914602 - t * (0.004817 + 0.000014 * t)) +
                          std::sin(2 * m) * (0.019993 - 0.000101 * t) + std::sin(3 * m) * 0.000289;
    const double omega = radians(125.04 - 1934.136 * t);
    const double apparentLongitude = meanLongitude + centre - 0.00569 - 0.00478 * std::sin(omega);
    const double meanObliquity =
        23.0 + (26.0 + (21.448 - t * (46.815 + t * (0.00059 - t * 0.001813))) / 60.0) / 60.0;
    const double obliquity = radians(meanObliquity + 0.00256 * std::cos(omega));

    SolarState state;
    state.declination = degrees(std::asin(std::sin(obliquity) * std::sin(radians(apparentLongitude))));
    const double y = std::pow(std::tan(obliquity / 2), 2);
    const double l0 = radians(meanLongitude);
    state.equationOfTime =
        4.0 * degrees(y * std::sin(2 * l0) - 2 * eccentricity * std::sin(m) +
                      4 * eccentricity * y * std::sin(m) * std::cos(2 * l0) - 0.5 * y * y * std::sin(4 * l0) -
                      1.25 * eccentricity * eccentricity * std::sin(2 * m));
    return state;
}

double julianDay(const QDate& date, double minutesUtc)
{
    return double(date.toJulianDay()) - 0.5 + minutesUtc / 1440.0;
}

QDateTime instant(const QDate& date, double minutesUtc)
{
    return QDateTime(date, QTime(0, 0), Qt::UTC).addMSecs(qint64(std::llround(minutesUtc * 60'000.0)));
}

// Minutes after 00:00 UTC of `date` at which the sun culminates at `longitude`.
double solarNoonMinutes(const QDate& date, double longitude)
{
    double minutes = 720.0 - 4.0 * longitude;
    for (int i = 0; i < kRefinements; ++i)
        minutes = 720.0 - 4.0 * longitude - solarState(julianDay(date, minutes)).equationOfTime;
    return minutes;
}

// The hour angle in degrees at which the sun's centre stands at `elevation`; nullopt when it never does.
std::optional<double> hourAngle(double latitude, double declination, double elevation)
{
    const double lat = radians(latitude);
    const double dec = radians(declination);
    const double cosine =
        (std::sin(radians(elevation)) - std::sin(lat) * std::sin(dec)) / (std::cos(lat) * std::cos(dec));
    if (!std::isfinite(cosine) || cosine < -1.0 || cosine > 1.0)
        return std::nullopt;
    return degrees(std::acos(cosine));
}

// The stretches of the day with the sun's centre between `low` and `high` degrees.
QList<SunWindow> windowsBetween(const QDate& date, const GeoPosition& position, double noonElevation,
                                double low, double high)
{
    if (noonElevation <= low)
        return {};
    const auto risesPastLow = SolarCalculator::crossing(date, position, low, true);
    const auto setsPastLow = SolarCalculator::crossing(date, position, low, false);
    if (noonElevation < high)
        return {SunWindow{risesPastLow, setsPastLow}}; // the sun peaks inside the band: one stretch
    QList<SunWindow> windows;
    if (const auto risesPastHigh = SolarCalculator::crossing(date, position, high, true))
        windows << SunWindow{risesPastLow, risesPastHigh};
    if (const auto setsPastHigh = SolarCalculator::crossing(date, position, high, false))
        windows << SunWindow{setsPastHigh, setsPastLow};
    return windows;
}

} // namespace

std::optional<QDateTime> SolarCalculator::crossing(const QDate& date, const GeoPosition& position,
                                                   double elevation, bool rising)
{
    double minutes = solarNoonMinutes(date, position.longitude);
    for (int i = 0; i < kRefinements; ++i) {
        const SolarState state = solarState(julianDay(date, minutes));
        const auto angle = hourAngle(position.latitude, state.declination, elevation);
        if (!angle)
            return std::nullopt;
        const double noon = 720.0 - 4.0 * position.longitude - state.equationOfTime;
        minutes = rising ? noon - 4.0 * *angle : noon + 4.0 * *angle;
    }
    return instant(date, minutes);
}

double SolarCalculator::elevation(const QDateTime& when, const GeoPosition& position)
{
    const QDateTime utc = when.toUTC();
    const double minutes = utc.time().msecsSinceStartOfDay() / 60'000.0;
    const SolarState state = solarState(julianDay(utc.date(), minutes));
    const double trueSolarMinutes = minutes + state.equationOfTime + 4.0 * position.longitude;
    const double hour = radians(trueSolarMinutes / 4.0 - 180.0);
    const double lat = radians(position.latitude);
    const double dec = radians(state.declination);
    const double sine = std::sin(lat) * std::sin(dec) + std::cos(lat) * std::cos(dec) * std::cos(hour);
    return degrees(std::asin(std::clamp(sine, -1.0, 1.0)));
}

SunTimes SolarCalculator::sunTimes(const QDate& date, const GeoPosition& position)
{
    SunTimes times;
    times.date = date;
    times.position = position;
    times.solarNoon = instant(date, solarNoonMinutes(date, position.longitude));
    times.noonElevation = elevation(times.solarNoon, position);
    times.sunrise = crossing(date, position, kSunriseElevation, true);
    times.sunset = crossing(date, position, kSunriseElevation, false);
    if (!times.sunrise && !times.sunset)
        times.course = times.noonElevation > kSunriseElevation ? SunCourse::alwaysUp : SunCourse::alwaysDown;
    times.goldenHours = windowsBetween(date, position, times.noonElevation, -4.0, 6.0);
    times.blueHours = windowsBetween(date, position, times.noonElevation, -6.0, -4.0);
    return times;
}

} // namespace lumaro::home
