// SPDX-License-Identifier: GPL-3.0-or-later
// The forecast client against a real HTTP server on 127.0.0.1 that replays an answer of Open-Meteo's shape:
// the week read, answers kept three hours, and a server that is silent, refuses or talks nonsense.
#include "home/ForecastClient.h"

#include "tests/home/ReplayHttpServer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace {

using lumaro::home::Forecast;
using lumaro::home::ForecastClient;
using lumaro::testing::waitUntil;
using ReplayServer = lumaro::testing::ReplayHttpServer;

struct Outcome
{
    std::optional<Forecast> forecast;
    std::optional<QString> unavailable;
    bool done() const { return forecast || unavailable; }
};

Outcome fetchOnce(ForecastClient& client, const lumaro::home::GeoPosition& where)
{
    Outcome outcome;
    QObject context;
    QObject::connect(&client, &ForecastClient::forecastReady, &context,
                     [&](const Forecast& forecast) { outcome.forecast = forecast; });
    QObject::connect(&client, &ForecastClient::forecastUnavailable, &context,
                     [&](const QString& reason) { outcome.unavailable = reason; });
    client.fetch(where);
    EXPECT_FALSE(outcome.done()) << "fetch() answered before it returned";
    EXPECT_TRUE(waitUntil([&] { return outcome.done(); }, 10'000));
    return outcome;
}

const lumaro::home::GeoPosition kParis{48.8566, 2.3522};

TEST(ForecastClient, ReadsTheWeekAndKeepsItThreeHours)
{
    ReplayServer server;
    lumaro::testing::TempFolder cache;
    double now = 1'718'960'000;
    ForecastClient client(
        server.url(), [&] { return now; }, cache.path());

    const Outcome first = fetchOnce(client, kParis);
    ASSERT_TRUE(first.forecast) << first.unavailable.value_or(QString()).toStdString();
    EXPECT_TRUE(server.lastRequest.contains("latitude=48.86&longitude=2.35"))
        << server.lastRequest.toStdString();
    ASSERT_EQ(first.forecast->days.size(), 2);
    const auto saturday = first.forecast->day(QDate(2024, 6, 22));
    ASSERT_TRUE(saturday);
    EXPECT_EQ(saturday->weatherCode, 61);
    EXPECT_DOUBLE_EQ(*saturday->temperatureMin, 12.3);
    EXPECT_DOUBLE_EQ(*saturday->temperatureMax, 19.0);
    EXPECT_FALSE(saturday->precipitationChance) << "null in the answer is no figure, not 0 %";
    EXPECT_EQ(saturday->cloudCover, 100) << "the null hour is left out of the mean";
    EXPECT_DOUBLE_EQ(*saturday->windSpeedMax, 24.5);
    EXPECT_EQ(first.forecast->day(QDate(2024, 6, 21))->cloudCover, 31);

    now += ForecastClient::cacheSeconds - 60;
    server.body = "{}";                                          // anything asked for now would fail
    const Outcome cached = fetchOnce(client, {48.8601, 2.3498}); // the same place to 0.01°
    ASSERT_TRUE(cached.forecast);
    EXPECT_EQ(server.requests, 1);
    EXPECT_EQ(cached.forecast->days.size(), 2);

    now += 120; // past three hours: asked again
    const Outcome stale = fetchOnce(client, kParis);
    EXPECT_EQ(server.requests, 2);
    EXPECT_TRUE(stale.unavailable);
}

TEST(ForecastClient, EveryBadAnswerMakesTheForecastUnavailableAndIsNotCached)
{
    const struct
    {
        const char* name;
        int status;
        QByteArray body;
        const char* said;
    } cases[] = {
        {"malformed JSON", 200, QByteArray(R"({"daily":{"time":["2024-06-21"],)"), "not JSON"},
        {"JSON without days", 200, QByteArray(R"({"latitude":1,"longitude":2})"), "no daily forecast"},
        {"a day that is no date", 200, QByteArray(R"({"daily":{"time":["soon"]}})"), "no date"},
        {"refused request", 400, QByteArray(R"({"error":true,"reason":"Latitude must be in range"})"),
         "HTTP 400: Latitude must be in range"},
        {"server error", 503, QByteArray("<html>busy</html>"), "HTTP 503"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        ReplayServer server;
        server.status = c.status;
        server.body = c.body;
        lumaro::testing::TempFolder cache;
        ForecastClient client(
            server.url(), [] { return 1e9; }, cache.path());
        const Outcome outcome = fetchOnce(client, kParis);
        ASSERT_TRUE(outcome.unavailable);
        EXPECT_TRUE(outcome.unavailable->contains(QLatin1String(c.said)))
            << outcome.unavailable->toStdString();
        EXPECT_FALSE(QFile::exists(client.cacheFile(kParis)));
    }
}

TEST(ForecastClient, ASilentServerTimesOutAndAServerGoneIsUnavailable)
{
    ReplayServer server;
    server.silent = true;
    lumaro::testing::TempFolder cache;
    ForecastClient client(
        server.url(), [] { return 1e9; }, cache.path());
    client.setTimeout(300);
    const Outcome silent = fetchOnce(client, kParis);
    ASSERT_TRUE(silent.unavailable);
    EXPECT_TRUE(silent.unavailable->contains(QLatin1String("no answer within")))
        << silent.unavailable->toStdString();

    ForecastClient nobody(
        QUrl(QStringLiteral("http://127.0.0.1:1/v1/forecast")), [] { return 1e9; }, cache.path());
    EXPECT_TRUE(fetchOnce(nobody, kParis).unavailable);
}

TEST(ForecastClient, LeftOutArgumentsMeanTheServiceAndTheSystemClock)
{
    ReplayServer server;
    lumaro::testing::TempFolder cache;
    EXPECT_EQ(ForecastClient({}, {}, cache.path()).requestUrl(kParis).host(),
              QStringLiteral("api.open-meteo.com"));
    ForecastClient client(server.url(), {}, cache.path());
    ASSERT_TRUE(fetchOnce(client, kParis).forecast);
    ASSERT_TRUE(fetchOnce(client, kParis).forecast); // from the cache, on the system's clock
    EXPECT_EQ(server.requests, 1);
}

TEST(ForecastClient, ANewerPlaceDropsTheOlderAnswer)
{
    ReplayServer server;
    lumaro::testing::TempFolder cache;
    ForecastClient client(
        server.url(), [] { return 1e9; }, cache.path());
    int answers = 0;
    QObject::connect(&client, &ForecastClient::forecastReady, [&] { ++answers; });
    client.fetch({10, 10});
    const Outcome outcome = fetchOnce(client, kParis);
    ASSERT_TRUE(outcome.forecast);
    EXPECT_EQ(answers, 1);
    EXPECT_FALSE(QFile::exists(client.cacheFile({10, 10})));
}

} // namespace

// Found by fuzzing: a code or percentage far outside its range was converted to int (undefined behaviour).
// Out of range now reads as missing, like null.
TEST(Forecast, FiguresOutsideTheirRangeReadAsMissing)
{
    const auto forecast = lumaro::home::Forecast::parse(
        R"({"daily":{"time":["2024-06-21"],"weather_code":[8.9e45],"precipitation_probability_max":[-1e300]},
            "hourly":{"time":["2024-06-21T00:00"],"cloud_cover":[1e20]}})");
    ASSERT_TRUE(forecast);
    ASSERT_EQ(forecast->days.size(), 1);
    EXPECT_EQ(forecast->days[0].weatherCode, -1);
    EXPECT_FALSE(forecast->days[0].precipitationChance);
    EXPECT_FALSE(forecast->days[0].cloudCover);
}
