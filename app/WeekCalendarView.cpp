// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WeekCalendarView.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QTextDocumentFragment>
#include <QUrl>
#include <QVBoxLayout>

namespace lumaro::app {

namespace {

QString clock(const std::optional<QDateTime>& when, const QTimeZone& zone)
{
    return when ? when->toTimeZone(zone).toString(QStringLiteral("HH:mm")) : QStringLiteral("…");
}

QString shootsHtml(const QList<home::Shoot>& shoots)
{
    QStringList lines;
    for (const home::Shoot& shoot : shoots)
        lines << QStringLiteral("<a href=\"%1\">%2</a> %3 张")
                     .arg(QUrl::fromLocalFile(shoot.folder).toString(QUrl::FullyEncoded).toHtmlEscaped(),
                          shoot.title.toHtmlEscaped())
                     .arg(shoot.pictures);
    return lines.join(QStringLiteral("<br>"));
}

} // namespace

QString windowsText(const QList<home::SunWindow>& windows, const QTimeZone& zone)
{
    QStringList parts;
    for (const home::SunWindow& window : windows)
        parts << clock(window.start, zone) + QStringLiteral("–") + clock(window.end, zone);
    return parts.isEmpty() ? QStringLiteral("无") : parts.join(QStringLiteral(" / "));
}

QString sunLines(const home::SunTimes& sun, const QTimeZone& zone, const QString& separator)
{
    QStringList lines;
    switch (sun.course) {
    case home::SunCourse::alwaysUp:
        lines << QStringLiteral("极昼：太阳整日不落");
        break;
    case home::SunCourse::alwaysDown:
        lines << QStringLiteral("极夜：太阳整日不升");
        break;
    case home::SunCourse::risesAndSets:
        lines << QStringLiteral("日出 %1 · 日落 %2").arg(clock(sun.sunrise, zone), clock(sun.sunset, zone));
        break;
    }
    lines << QStringLiteral("金色时光 ") + windowsText(sun.goldenHours, zone);
    lines << QStringLiteral("蓝调时刻 ") + windowsText(sun.blueHours, zone);
    return lines.join(separator);
}

QString weatherLine(const home::DayForecast& weather)
{
    QStringList parts{home::weatherText(weather.weatherCode)};
    if (weather.temperatureMin && weather.temperatureMax)
        parts << QStringLiteral("%1~%2°C")
                     .arg(std::lround(*weather.temperatureMin))
                     .arg(std::lround(*weather.temperatureMax));
    if (weather.precipitationChance)
        parts << QStringLiteral("降水 %1%").arg(*weather.precipitationChance);
    if (weather.cloudCover)
        parts << QStringLiteral("云量 %1%").arg(*weather.cloudCover);
    if (weather.windSpeedMax)
        parts << QStringLiteral("风 %1 km/h").arg(std::lround(*weather.windSpeedMax));
    return parts.join(QStringLiteral(" · "));
}

WeekCalendarView::WeekCalendarView(QWidget* parent)
    : QWidget(parent), m_range(new QLabel(this)), m_note(new QLabel(this))
{
    auto* previous = new QPushButton(QStringLiteral("◀"), this);
    previous->setToolTip(tr("上一周"));
    auto* current = new QPushButton(tr("本周"), this);
    auto* next = new QPushButton(QStringLiteral("▶"), this);
    next->setToolTip(tr("下一周"));
    for (QPushButton* button : {previous, next})
        button->setFixedWidth(36);
    connect(previous, &QPushButton::clicked, this, [this] { Q_EMIT weekStepRequested(-1); });
    connect(current, &QPushButton::clicked, this, [this] { Q_EMIT weekStepRequested(0); });
    connect(next, &QPushButton::clicked, this, [this] { Q_EMIT weekStepRequested(1); });

    auto* header = new QHBoxLayout;
    header->addWidget(previous);
    header->addWidget(m_range, 1, Qt::AlignCenter);
    header->addWidget(current);
    header->addWidget(next);

    auto* grid = new QGridLayout;
    grid->setSpacing(6);
    for (int i = 0; i < 7; ++i) {
        auto* day = new QLabel(this);
        day->setWordWrap(true);
        day->setAlignment(Qt::AlignTop | Qt::AlignLeft);
        day->setTextFormat(Qt::RichText);
        day->setMinimumWidth(120);
        day->setMargin(6);
        day->setFrameShape(QFrame::StyledPanel);
        connect(day, &QLabel::linkActivated, this,
                [this](const QString& link) { Q_EMIT openRequested(QUrl(link).toLocalFile()); });
        grid->addWidget(day, 0, i);
        grid->setColumnStretch(i, 1);
        m_days << day;
    }
    m_note->setWordWrap(true);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(header);
    layout->addLayout(grid);
    layout->addWidget(m_note);
}

void WeekCalendarView::showWeek(const QList<home::DayPlan>& days, const QTimeZone& zone, const QDate& today,
                                const QString& note)
{
    const QLocale chinese(QLocale::Chinese, QLocale::China);
    if (!days.isEmpty())
        m_range->setText(QStringLiteral("<b>%1 – %2</b>")
                             .arg(chinese.toString(days.constFirst().date, QStringLiteral("yyyy年M月d日")),
                                  chinese.toString(days.constLast().date, QStringLiteral("M月d日"))));
    for (int i = 0; i < m_days.size(); ++i) {
        QLabel* label = m_days.at(i);
        if (i >= days.size()) {
            label->clear();
            continue;
        }
        const home::DayPlan& day = days.at(i);
        QStringList html{QStringLiteral("<b>%1 %2</b>")
                             .arg(chinese.toString(day.date, QStringLiteral("ddd")),
                                  day.date.toString(QStringLiteral("M/d")))};
        if (day.weather)
            html << weatherLine(*day.weather).toHtmlEscaped();
        if (day.sun)
            html << sunLines(*day.sun, zone, QStringLiteral("<br>"));
        html << (day.shoots.isEmpty() ? QStringLiteral("<span style=\"color:gray\">没有拍摄</span>")
                                      : QStringLiteral("拍摄：<br>") + shootsHtml(day.shoots));
        label->setText(html.join(QStringLiteral("<br>")));
        label->setStyleSheet(day.date == today ? QStringLiteral("QLabel { border: 2px solid #d4a017; }")
                                               : QString());
    }
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
}

QString WeekCalendarView::dayText(int index) const
{
    if (index < 0 || index >= m_days.size())
        return {};
    return QTextDocumentFragment::fromHtml(m_days.at(index)->text()).toPlainText().replace(QChar::Nbsp, QLatin1Char(' '));
}

QString WeekCalendarView::note() const
{
    return m_note->text();
}

} // namespace lumaro::app
