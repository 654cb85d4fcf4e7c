// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PlaceChooser.h"

#include "home/HomeSettings.h"
#include "platform/location/GeoClueLocator.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCompleter>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

namespace lumaro::app {

PlaceChooser::PlaceChooser(home::HomeSettings& settings, platform::GeoClueLocator* locator, QWidget* parent)
    : QWidget(parent), m_settings(settings), m_locator(locator), m_cities(home::CityList::read()),
      m_city(new QComboBox(this)), m_locate(new QPushButton(tr("定位"), this)),
      m_forecast(new QCheckBox(tr("天气预报 (Open-Meteo)"), this)), m_message(new QLabel(this))
{
    std::sort(m_cities.begin(), m_cities.end(),
              [](const home::City& a, const home::City& b) { return a.name.localeAwareCompare(b.name) < 0; });
    m_city->setEditable(true);
    m_city->setInsertPolicy(QComboBox::NoInsert);
    m_city->setMinimumWidth(220);
    m_city->lineEdit()->setPlaceholderText(tr("输入城市（英文名，如 Shanghai、Paris）"));
    for (const home::City& city : m_cities)
        m_city->addItem(city.name, city.timeZone);
    m_city->completer()->setFilterMode(Qt::MatchContains);
    m_city->completer()->setCaseSensitivity(Qt::CaseInsensitive);
    connect(m_city, &QComboBox::activated, this, [this](int index) { chooseCity(m_city->itemText(index)); });
    connect(m_city->lineEdit(), &QLineEdit::returnPressed, this, [this] {
        if (!chooseCity(m_city->currentText()))
            say(tr("没有叫“%1”的城市：请从列表中选一个").arg(m_city->currentText()));
    });

    const bool canLocate = m_locator && m_locator->isAvailable();
    m_locate->setVisible(canLocate);
    m_locate->setToolTip(tr("用本机的定位服务 (GeoClue) 找到所在城市"));
    if (canLocate) {
        connect(m_locate, &QPushButton::clicked, this, [this] {
            m_locate->setEnabled(false);
            say(tr("正在定位…"));
            m_locator->locate();
        });
        connect(m_locator, &platform::GeoClueLocator::located, this,
                [this](double latitude, double longitude) {
                    m_locate->setEnabled(true);
                    m_settings.setPlace({tr("当前位置"), QString(), {latitude, longitude}});
                    say({});
                    showPlace();
                    Q_EMIT placeChanged();
                });
        connect(m_locator, &platform::GeoClueLocator::failed, this, [this](const QString& reason) {
            m_locate->setEnabled(true);
            say(tr("定位失败：%1").arg(reason));
        });
    }

    m_forecast->setChecked(m_settings.isForecastEnabled());
    m_forecast->setToolTip(tr("开启后，选定地点的经纬度会发给 Open-Meteo 以取得天气预报"));
    connect(m_forecast, &QCheckBox::toggled, this, [this](bool enabled) {
        m_settings.setForecastEnabled(enabled);
        Q_EMIT forecastSwitched(enabled);
    });

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("地点："), this));
    layout->addWidget(m_city);
    layout->addWidget(m_locate);
    layout->addWidget(m_forecast);
    layout->addWidget(m_message, 1);
    showPlace();
}

bool PlaceChooser::chooseCity(const QString& name)
{
    const auto city = home::CityList::find(m_cities, name);
    if (!city)
        return false;
    m_settings.setPlace({city->name, city->timeZone, city->position});
    say({});
    showPlace();
    Q_EMIT placeChanged();
    return true;
}

QString PlaceChooser::message() const
{
    return m_message->text();
}

void PlaceChooser::showPlace()
{
    const auto place = m_settings.place();
    if (!place) {
        m_city->setCurrentIndex(-1);
        m_city->setEditText({});
        return;
    }
    const int index = m_city->findText(place->name);
    if (index >= 0)
        m_city->setCurrentIndex(index);
    else
        m_city->setEditText(QStringLiteral("%1 (%2, %3)")
                                .arg(place->name)
                                .arg(place->position.latitude, 0, 'f', 2)
                                .arg(place->position.longitude, 0, 'f', 2));
}

void PlaceChooser::say(const QString& message)
{
    m_message->setText(message);
}

} // namespace lumaro::app
