// SPDX-License-Identifier: GPL-3.0-or-later
// The page shown when no folder is open, and from the 首页 button: recent work and the week ahead.
#pragma once

#include "home/Forecast.h"

#include <QDate>
#include <QTimeZone>
#include <QWidget>

#include <optional>

class QLabel;

namespace lumaro::browse {
class FolderCardScanner;
}
namespace lumaro::home {
class ForecastClient;
class HomeSettings;
} // namespace lumaro::home
namespace lumaro::library {
class ChannelStore;
class FavourManager;
} // namespace lumaro::library
namespace lumaro::platform {
class GeoClueLocator;
class SettingsStore;
} // namespace lumaro::platform

namespace lumaro::app {

class FolderCardList;
class PlaceChooser;
class WeekCalendarView;

// Main thread. Three shelves of folder cards (recent folders, channels, the import location's newest rolls:
// the folder panel's cards, cached apart from its own), the week's calendar and a headline for tomorrow. The
// cards are worked out off the main thread; the week's shoots fill in as each shelf completes. The forecast
// is asked for only with a place chosen and the forecast switched on; without an answer the calendar still
// has its sun times and says in one line that the forecast is unavailable. `today` is injected for tests.
class HomePage : public QWidget
{
    Q_OBJECT
public:
    HomePage(platform::SettingsStore& settings, library::ChannelStore& channels,
             library::FavourManager* favourites, home::ForecastClient* forecast,
             platform::GeoClueLocator* locator, QWidget* parent = nullptr);
    ~HomePage() override;

    // Reads the shelves again (the recent folders, channels and rolls may have changed) and asks for the
    // forecast.
    void refresh();
    void setToday(const QDate& today);
    void showWeekOf(const QDate& day);

    QString headline() const;
    WeekCalendarView& calendar() const { return *m_calendar; }
    PlaceChooser& placeChooser() const { return *m_places; }
    FolderCardList& recentShelf() const { return *m_recent; }
    FolderCardList& channelShelf() const { return *m_channelShelf; }
    FolderCardList& rollShelf() const { return *m_rolls; }

Q_SIGNALS:
    void openRequested(const QString& folder);

protected:
    void showEvent(QShowEvent* event) override;

private:
    FolderCardList* makeShelf(library::FavourManager* favourites);
    void askForecast();
    void showWeek();
    void showHeadline();
    QTimeZone zone() const;

    platform::SettingsStore& m_settingsStore;
    std::unique_ptr<home::HomeSettings> m_settings;
    library::ChannelStore& m_channels;
    home::ForecastClient* m_forecastClient;
    std::shared_ptr<browse::FolderCardScanner> m_scanner;
    PlaceChooser* m_places;
    QLabel* m_headline;
    WeekCalendarView* m_calendar;
    FolderCardList* m_recent;
    FolderCardList* m_channelShelf;
    FolderCardList* m_rolls;
    QDate m_today;
    QDate m_monday;
    std::optional<home::Forecast> m_forecast;
    QString m_forecastProblem; // why there is no forecast; empty while asking or when there is one
};

} // namespace lumaro::app
