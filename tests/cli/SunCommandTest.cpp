// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli sun as a user types it: a city's day in its own time zone, bad input refused with exit 2.
#include "tests/cli/CliRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

using lumaro::testing::runCli;

TEST(SunCommand, ACityDayInItsOwnTimeZone)
{
    const auto result =
        runCli({QStringLiteral("sun"), QStringLiteral("--city"), QStringLiteral("london"),
                QStringLiteral("--date"), QStringLiteral("2024-06-21"), QStringLiteral("--json")});
    if (result.exitCode == 2 && result.errText().contains(QLatin1String("zone1970.tab")))
        GTEST_SKIP() << "no tzdata city table";
    ASSERT_EQ(result.exitCode, 0) << result.errText().toStdString();
    const QJsonObject sun = QJsonDocument::fromJson(result.out).object();
    EXPECT_EQ(sun.value(QStringLiteral("timeZone")).toString(), QStringLiteral("Europe/London"));
    // 03:43 UTC is 04:43 in British Summer Time.
    EXPECT_TRUE(sun.value(QStringLiteral("sunrise")).toString().startsWith(QLatin1String("2024-06-21T04:43")))
        << result.outText().toStdString();
    EXPECT_EQ(sun.value(QStringLiteral("goldenHours")).toArray().size(), 2);
}

TEST(SunCommand, PolarNightSaysTheSunStaysDown)
{
    const auto result = runCli({QStringLiteral("sun"), QStringLiteral("--lat"), QStringLiteral("69.65"),
                                QStringLiteral("--lon"), QStringLiteral("18.96"), QStringLiteral("--date"),
                                QStringLiteral("2024-12-21")});
    ASSERT_EQ(result.exitCode, 0) << result.errText().toStdString();
    EXPECT_TRUE(result.outText().contains(QLatin1String("the sun stays below the horizon all day")))
        << result.outText().toStdString();
}

TEST(SunCommand, BadInputIsRefusedWithItsReason)
{
    const struct
    {
        QStringList arguments;
        const char* said;
    } cases[] = {
        {{QStringLiteral("--city"), QStringLiteral("Paris"), QStringLiteral("--date"),
          QStringLiteral("2024-02-30")},
         "is not a day"},
        {{QStringLiteral("--lat"), QStringLiteral("91"), QStringLiteral("--lon"), QStringLiteral("0")},
         "between -90 and 90"},
        {{QStringLiteral("--lat"), QStringLiteral("10"), QStringLiteral("--lon"), QStringLiteral("east")},
         "between -180 and 180"},
        {{QStringLiteral("--lat"), QStringLiteral("10")}, "go together"},
        {{QStringLiteral("--city"), QStringLiteral("Atlantis")}, "unknown city \"Atlantis\""},
        {{}, "no place"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.arguments.join(QLatin1Char(' ')).toStdString());
        const auto result = runCli(QStringList{QStringLiteral("sun")} + c.arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_TRUE(result.errText().contains(QLatin1String(c.said))) << result.errText().toStdString();
        EXPECT_TRUE(result.out.isEmpty());
    }
}

} // namespace
