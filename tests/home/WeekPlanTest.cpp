// SPDX-License-Identifier: GPL-3.0-or-later
// The home page's week and shelves: Monday first, shoots by the day their pictures were taken, a folder on
// two shelves counted once, the newest rolls, the recent folders.
#include "home/WeekPlan.h"
#include "home/HomeShelves.h"
#include "home/RecentFolders.h"

#include "platform/fakes/MemorySettingsStore.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace {

using lumaro::home::WeekPlan;

lumaro::browse::FolderCard cardWith(const QString& path, const QMap<QDate, int>& days)
{
    lumaro::browse::FolderCard card;
    card.path = path;
    card.picturesByDay = days;
    return card;
}

TEST(WeekPlan, MondayFirstWithEachDaysShootsSunAndWeather)
{
    EXPECT_EQ(WeekPlan::weekStart(QDate(2026, 11, 22)), QDate(2026, 11, 16)); // a Sunday ends its week
    EXPECT_EQ(WeekPlan::weekStart(QDate(2026, 11, 16)), QDate(2026, 11, 16));
    EXPECT_EQ(WeekPlan::weekStart(QDate(2027, 1, 1)), QDate(2026, 12, 28)); // across the year

    const QDate monday(2026, 11, 16);
    const QList<lumaro::home::TitledCard> cards{
        {cardWith(QStringLiteral("/p/street"), {{monday, 2}, {monday.addDays(9), 5}}),
         QStringLiteral("street")},
        {cardWith(QStringLiteral("/p/wedding"), {{monday, 40}}), QStringLiteral("婚礼")},
        {cardWith(QStringLiteral("/p/street"), {{monday, 2}}), QStringLiteral("street again")},
    };
    lumaro::home::Forecast forecast;
    forecast.days << lumaro::home::DayForecast{monday.addDays(1), 61};
    const lumaro::home::Place paris{QStringLiteral("Paris"), QStringLiteral("Europe/Paris"), {48.87, 2.33}};

    const auto days = WeekPlan::build(monday, cards, paris, forecast);
    ASSERT_EQ(days.size(), 7);
    ASSERT_EQ(days[0].shoots.size(), 2) << "a folder on two shelves is one shoot";
    EXPECT_EQ(days[0].shoots[0].title, QStringLiteral("婚礼")) << "the bigger shoot first";
    EXPECT_EQ(days[0].shoots[1].pictures, 2);
    EXPECT_TRUE(days[6].shoots.isEmpty()) << "pictures of the next week stay out";
    EXPECT_TRUE(days[3].sun && days[3].sun->sunrise);
    EXPECT_FALSE(days[0].weather);
    EXPECT_EQ(days[1].weather->weatherCode, 61);

    const auto nowhere = WeekPlan::build(monday, cards, std::nullopt, std::nullopt);
    EXPECT_FALSE(nowhere[0].sun) << "no place, no sun times";
}

TEST(HomeShelves, NewestRollsFirstShowingTheirJpgOrRawPictures)
{
    lumaro::testing::TempFolder location;
    location.makeFolder(QStringLiteral("roll01/JPG"));
    location.makeFolder(QStringLiteral("roll02/RAW"));
    location.makeFolder(QStringLiteral("roll10/JPG"));
    location.makeFolder(QStringLiteral("roll10/RAW"));
    location.makeFolder(QStringLiteral("roll03"));
    location.makeFolder(QStringLiteral("rollercoaster"));
    location.write(QStringLiteral("roll99"));

    const auto shelf = lumaro::home::HomeShelves::newestRolls(location.path(), 3);
    EXPECT_EQ(shelf.folders, (QStringList{location.filePath(QStringLiteral("roll10/JPG")),
                                          location.filePath(QStringLiteral("roll03")),
                                          location.filePath(QStringLiteral("roll02/RAW"))}));
    EXPECT_EQ(shelf.titles.value(location.filePath(QStringLiteral("roll10/JPG"))), QStringLiteral("roll10"));
    EXPECT_TRUE(
        lumaro::home::HomeShelves::newestRolls(location.filePath(QStringLiteral("gone"))).folders.isEmpty());
}

TEST(RecentFolders, NewestFirstOnceEachAndBounded)
{
    lumaro::platform::MemorySettingsStore store;
    lumaro::home::RecentFolders recent(store);
    for (int i = 0; i < lumaro::home::RecentFolders::maxFolders + 2; ++i)
        recent.remember(QStringLiteral("/p/%1").arg(i));
    recent.remember(QStringLiteral("/p/5/"));
    const QStringList folders = recent.folders();
    ASSERT_EQ(folders.size(), lumaro::home::RecentFolders::maxFolders);
    EXPECT_EQ(folders.first(), QStringLiteral("/p/5"));
    EXPECT_EQ(folders.count(QStringLiteral("/p/5")), 1);
    EXPECT_FALSE(folders.contains(QStringLiteral("/p/0"))) << "the oldest pushed out";
    store.setBytes(lumaro::home::RecentFolders::settingsKey, "{broken");
    EXPECT_TRUE(recent.folders().isEmpty());
}

TEST(RecentFolders, AStoredListEditedByHandShowsEachFolderOnceAndOnlyAbsolutePaths)
{
    lumaro::platform::MemorySettingsStore store;
    QByteArray many = "[";
    for (int i = 0; i < 2 * lumaro::home::RecentFolders::maxFolders; ++i)
        many += QStringLiteral("\"/q/%1\",").arg(i).toUtf8();
    store.setBytes(lumaro::home::RecentFolders::settingsKey,
                   many + R"("/p/a", "/p/a/", "/p//a", "relative", "", 7, "/p/b"])");
    lumaro::home::RecentFolders recent(store);
    EXPECT_EQ(recent.folders().size(), lumaro::home::RecentFolders::maxFolders);
    store.setBytes(lumaro::home::RecentFolders::settingsKey,
                   R"(["/p/a", "/p/a/", "/p//a", "relative", "../up", "", 7, "/p/b/../c"])");
    EXPECT_EQ(recent.folders(), (QStringList{QStringLiteral("/p/a"), QStringLiteral("/p/c")}));
    recent.remember(QStringLiteral("/p/c"));
    EXPECT_EQ(recent.folders(), (QStringList{QStringLiteral("/p/c"), QStringLiteral("/p/a")}));
}

} // namespace
