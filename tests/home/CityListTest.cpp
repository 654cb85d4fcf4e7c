// SPDX-License-Identifier: GPL-3.0-or-later
// Cities from tzdata's zone1970.tab: both coordinate forms, bad lines left out, names found as people type
// them.
#include "home/CityList.h"
#include "home/HomeSettings.h"

#include "platform/fakes/MemorySettingsStore.h"
#include "tests/support/TempFolder.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

using lumaro::home::CityList;

TEST(CityList, ReadsBothCoordinateFormsAndSkipsBadLines)
{
    lumaro::testing::TempFolder folder;
    const QString path = folder.path() + QStringLiteral("/zone1970.tab");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("# comment\n"
               "AR\t-3436-05827\tAmerica/Argentina/Buenos_Aires\tBuenos Aires (BA, CF)\n"
               "US\t+404251-0740023\tAmerica/New_York\tEastern (most areas)\n"
               "XX\t+9930+00000\tBad/Latitude\n"
               "XX\t+4230+0013\tBad/Short\n"
               "XX\tnonsense\n"
               "XX\t+4230+00131\tTrailing/\n"
               "XX\t+4230+00131\tSpaced/_\n");
    file.close();

    const auto cities = CityList::read(path);
    ASSERT_EQ(cities.size(), 2);
    EXPECT_EQ(cities[0].name, QStringLiteral("Buenos Aires"));
    EXPECT_NEAR(cities[0].position.latitude, -34.6, 1e-9);
    EXPECT_NEAR(cities[0].position.longitude, -58.45, 1e-9);
    EXPECT_NEAR(cities[1].position.latitude, 40 + 42 / 60.0 + 51 / 3600.0, 1e-9);
    EXPECT_NEAR(cities[1].position.longitude, -(74 + 0 / 60.0 + 23 / 3600.0), 1e-9);

    for (const char* typed : {"buenos aires", "Buenos_Aires", "america/argentina/buenos_aires"})
        EXPECT_EQ(CityList::find(cities, QString::fromLatin1(typed))->timeZone,
                  QStringLiteral("America/Argentina/Buenos_Aires"))
            << typed;
    EXPECT_FALSE(CityList::find(cities, QStringLiteral("Atlantis")));
    EXPECT_FALSE(CityList::find(cities, QStringLiteral("  ")));
    EXPECT_TRUE(CityList::read(folder.path() + QStringLiteral("/missing.tab")).isEmpty());
}

TEST(CityList, TheSystemTableHasTheBigCities)
{
    const auto cities = CityList::read();
    if (cities.isEmpty())
        GTEST_SKIP() << "no " << CityList::systemFile().toStdString() << " (tzdata)";
    EXPECT_GT(cities.size(), 250);
    const auto tokyo = CityList::find(cities, QStringLiteral("Tokyo"));
    ASSERT_TRUE(tokyo);
    EXPECT_NEAR(tokyo->position.latitude, 35.65, 0.1);
}

TEST(HomeSettings, NoPlaceUntilChosenAndAStoredOneThatCannotBeReadIsNone)
{
    lumaro::platform::MemorySettingsStore store;
    lumaro::home::HomeSettings settings(store);
    EXPECT_FALSE(settings.place());
    EXPECT_TRUE(settings.isForecastEnabled());

    const lumaro::home::Place paris{
        QStringLiteral("Paris"), QStringLiteral("Europe/Paris"), {48.8667, 2.3333}};
    settings.setPlace(paris);
    EXPECT_EQ(settings.place(), paris);
    EXPECT_EQ(settings.place()->zone().id(), QByteArray("Europe/Paris"));

    store.setBytes(lumaro::home::HomeSettings::placeKey, "{\"latitude\": 123, \"longitude\": 0}");
    EXPECT_FALSE(settings.place());
    store.setBytes(lumaro::home::HomeSettings::placeKey, "not json");
    EXPECT_FALSE(settings.place());
}

} // namespace
