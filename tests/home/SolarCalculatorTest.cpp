// SPDX-License-Identifier: GPL-3.0-or-later
// Sun times of several cities and seasons, both hemispheres, midnight sun and polar night, within a minute.
//
// The reference times were computed with PyEphem 4.1.4 (Debian's python3-ephem: VSOP87 planetary theory, an
// implementation independent of the equations under test) with the almanac's conventions: sunrise and sunset
// when the upper limb is 34′ below the horizon (standard refraction, pressure 0 in PyEphem), the other
// elevations for the sun's centre without refraction. London's solstice rows match the published 04:43/21:21
// BST and 08:04/15:54 GMT of the almanacs.
#include "home/SolarCalculator.h"

#include <gtest/gtest.h>

namespace {

using lumaro::home::GeoPosition;
using lumaro::home::SolarCalculator;
using lumaro::home::SunCourse;
using lumaro::home::SunWindow;

struct SunCase
{
    const char* place;
    GeoPosition position;
    const char* date;
    const char* sunrise; // UTC; nullptr: the sun does not rise that day
    const char* sunset;
};

const SunCase kCases[] = {
    {"London, June solstice",
     {51.5074, -0.1278},
     "2024-06-21",
     "2024-06-21T03:43:14Z",
     "2024-06-21T20:21:36Z"},
    {"London, December solstice",
     {51.5074, -0.1278},
     "2024-12-21",
     "2024-12-21T08:03:57Z",
     "2024-12-21T15:53:39Z"},
    {"Sydney, southern winter",
     {-33.8688, 151.2093},
     "2024-06-21",
     "2024-06-20T21:00:05Z",
     "2024-06-21T06:53:53Z"},
    {"Buenos Aires, southern summer",
     {-34.6037, -58.3816},
     "2024-12-21",
     "2024-12-21T08:37:28Z",
     "2024-12-21T23:06:18Z"},
    {"Singapore, equinox", {1.3521, 103.8198}, "2024-03-20", "2024-03-19T23:08:51Z", "2024-03-20T11:15:22Z"},
    {"New York, the day clocks go back",
     {40.7128, -74.0060},
     "2024-11-03",
     "2024-11-03T11:29:20Z",
     "2024-11-03T21:49:18Z"},
    {"Beijing", {39.9042, 116.4074}, "2025-09-01", "2025-08-31T21:42:05Z", "2025-09-01T10:46:03Z"},
    {"Reykjavik, sunset after midnight",
     {64.1466, -21.9426},
     "2025-06-21",
     "2025-06-21T02:55:20Z",
     "2025-06-22T00:03:51Z"},
};

QDateTime utc(const char* text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate);
}

void expectNear(const std::optional<QDateTime>& actual, const char* expected, const char* what)
{
    ASSERT_TRUE(actual.has_value()) << what;
    EXPECT_LE(std::abs(actual->secsTo(utc(expected))), 60)
        << what << ": " << actual->toString(Qt::ISODate).toStdString() << " against " << expected;
}

TEST(SolarCalculator, SunriseAndSunsetWithinAMinute)
{
    for (const SunCase& c : kCases) {
        SCOPED_TRACE(c.place);
        const auto sun = SolarCalculator::sunTimes(
            QDate::fromString(QString::fromLatin1(c.date), Qt::ISODate), c.position);
        EXPECT_EQ(sun.course, SunCourse::risesAndSets);
        expectNear(sun.sunrise, c.sunrise, "sunrise");
        expectNear(sun.sunset, c.sunset, "sunset");
    }
}

TEST(SolarCalculator, GoldenAndBlueHoursOfAnOrdinaryDay)
{
    const auto sun = SolarCalculator::sunTimes(QDate(2024, 12, 21), {51.5074, -0.1278});
    ASSERT_EQ(sun.blueHours.size(), 2);
    ASSERT_EQ(sun.goldenHours.size(), 2);
    expectNear(sun.blueHours[0].start, "2024-12-21T07:23:38Z", "morning blue hour starts");
    expectNear(sun.blueHours[0].end, "2024-12-21T07:38:49Z", "morning blue hour ends");
    expectNear(sun.goldenHours[0].start, "2024-12-21T07:38:49Z", "morning golden hour starts");
    expectNear(sun.goldenHours[0].end, "2024-12-21T09:05:42Z", "morning golden hour ends");
    expectNear(sun.goldenHours[1].start, "2024-12-21T14:51:53Z", "evening golden hour starts");
    expectNear(sun.goldenHours[1].end, "2024-12-21T16:18:46Z", "evening golden hour ends");
    expectNear(sun.blueHours[1].start, "2024-12-21T16:18:46Z", "evening blue hour starts");
    expectNear(sun.blueHours[1].end, "2024-12-21T16:33:57Z", "evening blue hour ends");
}

TEST(SolarCalculator, MidnightSunHasNoSunriseAndAGoldenNight)
{
    // Tromsø at the June solstice: the sun never sets, but dips below 6° at night.
    const auto sun = SolarCalculator::sunTimes(QDate(2024, 6, 21), {69.6492, 18.9553});
    EXPECT_EQ(sun.course, SunCourse::alwaysUp);
    EXPECT_FALSE(sun.sunrise);
    EXPECT_FALSE(sun.sunset);
    EXPECT_TRUE(sun.blueHours.isEmpty());
    ASSERT_EQ(sun.goldenHours.size(), 2);
    EXPECT_FALSE(sun.goldenHours[0].start) << "golden since the night before";
    expectNear(sun.goldenHours[0].end, "2024-06-21T00:56:59Z", "golden hour ends in the morning");
    expectNear(sun.goldenHours[1].start, "2024-06-21T20:35:06Z", "golden hour starts in the evening");
    EXPECT_FALSE(sun.goldenHours[1].end) << "golden on into the night";
}

TEST(SolarCalculator, PolarNightHasNoSunriseButTwilight)
{
    // Tromsø at the December solstice: the sun stays below the horizon but rises above −4° around noon.
    const auto sun = SolarCalculator::sunTimes(QDate(2024, 12, 21), {69.6492, 18.9553});
    EXPECT_EQ(sun.course, SunCourse::alwaysDown);
    EXPECT_FALSE(sun.sunrise);
    ASSERT_EQ(sun.goldenHours.size(), 1);
    expectNear(sun.goldenHours[0].start, "2024-12-21T09:29:52Z", "twilight glow starts");
    expectNear(sun.goldenHours[0].end, "2024-12-21T11:55:00Z", "twilight glow ends");
    ASSERT_EQ(sun.blueHours.size(), 2);
    expectNear(sun.blueHours[0].start, "2024-12-21T08:31:31Z", "morning blue hour starts");
    expectNear(sun.blueHours[1].end, "2024-12-21T12:53:21Z", "evening blue hour ends");
}

TEST(SolarCalculator, SouthPoleSummerIsAllDayAboveEveryBand)
{
    const auto sun = SolarCalculator::sunTimes(QDate(2024, 12, 21), {-77.85, 166.67});
    EXPECT_EQ(sun.course, SunCourse::alwaysUp);
    EXPECT_TRUE(sun.goldenHours.isEmpty());
    EXPECT_TRUE(sun.blueHours.isEmpty());
    EXPECT_GT(sun.noonElevation, 30.0);
}

} // namespace
