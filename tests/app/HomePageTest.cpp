// SPDX-License-Identifier: GPL-3.0-or-later
// The home page offscreen over real folders and a real HTTP server on 127.0.0.1: the week's shoots from the
// recent folders and the newest rolls, the weather asked for only with a place and the switch on, and the
// sun's times kept when the forecast fails.
#include "app/HomePage.h"
#include "app/PlaceChooser.h"
#include "app/WeekCalendarView.h"
#include "cards/ImportLocation.h"
#include "home/CityList.h"
#include "home/ForecastClient.h"
#include "home/RecentFolders.h"
#include "library/ChannelStore.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "tests/home/ReplayHttpServer.h"
#include "tests/support/TempFolder.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFile>

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using testing::TempFolder;
using testing::waitUntil;

// A picture without EXIF, so the file's time tells when it was taken.
void pictureTakenOn(TempFolder& folder, const QString& name, const QDate& day)
{
    QFile file(folder.writePicture(name));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime(day, QTime(10, 0)), QFileDevice::FileModificationTime));
}

TEST(HomePage, TheWeeksShootsAndTheWeatherOnlyWithAPlaceAndTheSwitchOn)
{
    if (home::CityList::read().isEmpty())
        GTEST_SKIP() << "no tzdata city table";
    const QDate monday(2026, 11, 16);
    TempFolder pictures;
    pictureTakenOn(pictures, QStringLiteral("street/1.png"), monday.addDays(1));
    pictureTakenOn(pictures, QStringLiteral("street/2.png"), monday.addDays(1));
    pictureTakenOn(pictures, QStringLiteral("Lumaro/roll01/JPG/1.png"), monday.addDays(3));
    platform::MemorySettingsStore settings;
    home::RecentFolders(settings).remember(pictures.filePath(QStringLiteral("street")));
    cards::ImportLocation(settings).setPath(pictures.filePath(QStringLiteral("Lumaro")));
    library::ChannelStore channels(settings);

    testing::ReplayHttpServer server;
    server.body = QByteArray(testing::openMeteoAnswer)
                      .replace("2024-06-21", "2026-11-23")
                      .replace("2024-06-22", "2026-11-24");
    TempFolder cache;
    home::ForecastClient forecast(
        server.url(), [] { return 1.8e9; }, cache.path());
    HomePage page(settings, channels, nullptr, &forecast, nullptr);
    page.setToday(QDate(2026, 11, 22));
    page.resize(1200, 900);
    page.show();

    WeekCalendarView& calendar = page.calendar();
    ASSERT_TRUE(waitUntil([&] {
        return calendar.dayText(1).contains(QStringLiteral("street 2 张")) &&
               calendar.dayText(3).contains(QStringLiteral("roll01 1 张"));
    })) << calendar.dayText(1).toStdString()
        << " / " << calendar.dayText(3).toStdString();
    EXPECT_FALSE(calendar.dayText(0).contains(QStringLiteral("日出")));
    EXPECT_TRUE(calendar.note().contains(QStringLiteral("选择一个地点")));
    EXPECT_EQ(server.requests, 0) << "no place, no request";

    ASSERT_TRUE(page.placeChooser().chooseCity(QStringLiteral("Paris")));
    ASSERT_TRUE(waitUntil([&] { return page.headline().contains(QStringLiteral("局部多云")); }))
        << page.headline().toStdString();
    EXPECT_TRUE(page.headline().contains(QStringLiteral("明天 11月23日")));
    EXPECT_TRUE(page.headline().contains(QStringLiteral("金色时光")));
    EXPECT_TRUE(calendar.dayText(0).contains(QStringLiteral("日出 08:")));
    EXPECT_EQ(server.requests, 1);

    page.placeChooser().findChild<QCheckBox*>()->setChecked(false);
    page.refresh();
    QCoreApplication::processEvents();
    EXPECT_EQ(server.requests, 1) << "switched off: nothing asked";
    EXPECT_TRUE(calendar.note().contains(QStringLiteral("天气预报已关闭")));

    page.placeChooser().findChild<QCheckBox*>()->setChecked(true);
    server.status = 503;
    ASSERT_TRUE(page.placeChooser().chooseCity(QStringLiteral("Tokyo"))); // not cached: asked, and refused
    ASSERT_TRUE(waitUntil([&] { return calendar.note().contains(QStringLiteral("天气预报暂不可用")); }));
    EXPECT_TRUE(calendar.dayText(0).contains(QStringLiteral("日出"))) << "the sun's times stay";
    EXPECT_FALSE(page.headline().contains(QStringLiteral("局部多云"))) << "Paris's weather is not Tokyo's";
}

} // namespace
} // namespace lumaro::app
