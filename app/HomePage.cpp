// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/HomePage.h"

#include "app/FolderCardList.h"
#include "app/PlaceChooser.h"
#include "app/WeekCalendarView.h"
#include "browse/folders/FolderCardScanner.h"
#include "cards/ImportLocation.h"
#include "home/ForecastClient.h"
#include "home/HomeSettings.h"
#include "home/HomeShelves.h"
#include "home/RecentFolders.h"
#include "library/ChannelStore.h"
#include "platform/AppPaths.h"

#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <QScrollArea>
#include <QThreadPool>
#include <QVBoxLayout>

namespace lumaro::app {

namespace {

QLabel* shelfTitle(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(QStringLiteral("<b>%1</b>").arg(text), parent);
    label->setContentsMargins(0, 8, 0, 0);
    return label;
}

} // namespace

HomePage::HomePage(platform::SettingsStore& settings, library::ChannelStore& channels,
                   library::FavourManager* favourites, home::ForecastClient* forecast,
                   platform::GeoClueLocator* locator, QWidget* parent)
    : QWidget(parent), m_settingsStore(settings), m_settings(std::make_unique<home::HomeSettings>(settings)),
      m_channels(channels), m_forecastClient(forecast),
      m_scanner(std::make_shared<browse::FolderCardScanner>(nullptr, platform::AppPaths::cacheDir() +
                                                                         QStringLiteral("/home-cards"))),
      m_today(QDate::currentDate())
{
    m_places = new PlaceChooser(*m_settings, locator, this);
    m_headline = new QLabel(this);
    m_headline->setWordWrap(true);
    m_headline->setTextFormat(Qt::RichText);
    m_calendar = new WeekCalendarView(this);
    m_recent = makeShelf(favourites);
    m_channelShelf = makeShelf(favourites);
    m_rolls = makeShelf(favourites);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(m_places);
    layout->addWidget(m_headline);
    layout->addWidget(m_calendar);
    layout->addWidget(shelfTitle(tr("最近打开的文件夹"), content));
    layout->addWidget(m_recent);
    layout->addWidget(shelfTitle(tr("频道"), content));
    layout->addWidget(m_channelShelf);
    layout->addWidget(shelfTitle(tr("最新导入"), content));
    layout->addWidget(m_rolls);
    layout->addStretch(1);
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(content);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(scroll);

    connect(m_places, &PlaceChooser::placeChanged, this, [this] {
        m_forecast.reset();
        askForecast();
        showWeek();
    });
    connect(m_places, &PlaceChooser::forecastSwitched, this, [this] {
        m_forecast.reset();
        askForecast();
        showWeek();
    });
    connect(m_calendar, &WeekCalendarView::weekStepRequested, this,
            [this](int weeks) { showWeekOf(weeks == 0 ? m_today : m_monday.addDays(7 * weeks)); });
    connect(m_calendar, &WeekCalendarView::openRequested, this, &HomePage::openRequested);
    if (m_forecastClient) {
        connect(m_forecastClient, &home::ForecastClient::forecastReady, this,
                [this](const home::Forecast& forecast) {
                    m_forecast = forecast;
                    m_forecastProblem.clear();
                    showWeek();
                });
        connect(m_forecastClient, &home::ForecastClient::forecastUnavailable, this,
                [this](const QString& reason) {
                    m_forecast.reset();
                    m_forecastProblem = reason;
                    showWeek();
                });
    }
    connect(&m_channels, &library::ChannelStore::channelsChanged, this, &HomePage::refresh);
    m_monday = home::WeekPlan::weekStart(m_today);
    showWeek();
}

HomePage::~HomePage() = default;

FolderCardList* HomePage::makeShelf(library::FavourManager* favourites)
{
    auto* shelf = new FolderCardList(favourites, this, m_scanner);
    // One row that scrolls sideways: the page stays a page, however many folders there are.
    shelf->setFlow(QListView::LeftToRight);
    shelf->setWrapping(false);
    shelf->setMinimumHeight(0);
    shelf->setGridSize(shelf->gridSize() + QSize(24, 16)); // room for a date range on one line
    shelf->setFixedHeight(shelf->gridSize().height() + 24);
    connect(shelf, &FolderCardList::openRequested, this, &HomePage::openRequested);
    connect(shelf, &FolderCardList::cardsComplete, this, &HomePage::showWeek);
    return shelf;
}

void HomePage::refresh()
{
    const home::Shelf recent = home::HomeShelves::recent(home::RecentFolders(m_settingsStore).folders());
    m_recent->showFolders(QStringLiteral("home:recent"), recent.folders, recent.titles);
    const home::Shelf channels = home::HomeShelves::channels(m_channels.channels());
    m_channelShelf->showFolders(QStringLiteral("home:channels"), channels.folders, channels.titles);
    // The import location may be on a slow disk: listed on the pool.
    QPointer<HomePage> self(this);
    const QString location = cards::ImportLocation(m_settingsStore).path();
    QThreadPool::globalInstance()->start([self, location] {
        const home::Shelf rolls = home::HomeShelves::newestRolls(location);
        QMetaObject::invokeMethod(
            self.data(),
            [self, rolls] {
                if (self)
                    self->m_rolls->showFolders(QStringLiteral("home:rolls"), rolls.folders, rolls.titles);
            },
            Qt::QueuedConnection);
    });
    askForecast();
}

void HomePage::setToday(const QDate& today)
{
    m_today = today;
    showWeekOf(today);
}

void HomePage::showWeekOf(const QDate& day)
{
    m_monday = home::WeekPlan::weekStart(day);
    showWeek();
}

void HomePage::askForecast()
{
    const auto place = m_settings->place();
    m_forecastProblem.clear();
    if (!m_forecastClient || !place || !m_settings->isForecastEnabled())
        return;
    m_forecastClient->fetch(place->position);
}

QTimeZone HomePage::zone() const
{
    const auto place = m_settings->place();
    return place ? place->zone() : QTimeZone::systemTimeZone();
}

void HomePage::showWeek()
{
    QList<home::TitledCard> cards;
    for (FolderCardList* shelf : {m_recent, m_channelShelf, m_rolls}) {
        for (const QString& folder : shelf->folders()) {
            if (const auto card = shelf->card(folder))
                cards << home::TitledCard{*card, shelf->titleOf(folder)};
        }
    }
    const auto place = m_settings->place();
    const QList<home::DayPlan> days = home::WeekPlan::build(m_monday, cards, place, m_forecast);
    QString note;
    if (!place)
        note = tr("选择一个地点，日历里就有每天的日出日落、金色时光和蓝调时刻");
    else if (!m_settings->isForecastEnabled())
        note = tr("天气预报已关闭");
    else if (!m_forecastProblem.isEmpty())
        note = tr("天气预报暂不可用（%1），日出日落照常显示").arg(m_forecastProblem);
    m_calendar->showWeek(days, zone(), m_today, note);
    showHeadline();
}

void HomePage::showHeadline()
{
    const auto place = m_settings->place();
    if (!place) {
        m_headline->clear();
        m_headline->hide();
        return;
    }
    const QDate tomorrow = m_today.addDays(1);
    const QList<home::DayPlan> days = home::WeekPlan::build(tomorrow, {}, place, m_forecast);
    const home::DayPlan& day = days.constFirst();
    const QLocale chinese(QLocale::Chinese, QLocale::China);
    QStringList parts{
        QStringLiteral("<b>明天 %1</b>").arg(chinese.toString(tomorrow, QStringLiteral("M月d日 ddd"))),
        QStringLiteral("%1：").arg(place->name.toHtmlEscaped()) + QStringLiteral("金色时光 ") +
            windowsText(day.sun->goldenHours, zone())};
    if (day.weather)
        parts << weatherLine(*day.weather).toHtmlEscaped();
    m_headline->setText(parts.join(QStringLiteral(" · ")));
    m_headline->show();
}

QString HomePage::headline() const
{
    return m_headline->text();
}

void HomePage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refresh();
}

} // namespace lumaro::app
