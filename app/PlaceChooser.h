// SPDX-License-Identifier: GPL-3.0-or-later
// Where the home page's sun times and weather are for: a city typed or picked, or this machine's place.
#pragma once

#include "home/CityList.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace lumaro::home {
class HomeSettings;
}
namespace lumaro::platform {
class GeoClueLocator;
}

namespace lumaro::app {

// Main thread. The cities come from the system's time-zone table; 定位 asks GeoClue (shown only where the
// service is, and asked only on that click: the user's desktop may still refuse). The choice and the forecast
// switch are kept in the settings at once; nothing is asked of a network here.
class PlaceChooser : public QWidget
{
    Q_OBJECT
public:
    PlaceChooser(home::HomeSettings& settings, platform::GeoClueLocator* locator, QWidget* parent = nullptr);

    // Picks the city named `name` as if typed and confirmed; false when there is none of that name.
    bool chooseCity(const QString& name);
    QString message() const;

Q_SIGNALS:
    void placeChanged();
    void forecastSwitched(bool enabled);

private:
    void showPlace();
    void say(const QString& message);

    home::HomeSettings& m_settings;
    platform::GeoClueLocator* m_locator;
    QList<home::City> m_cities;
    QComboBox* m_city;
    QPushButton* m_locate;
    QCheckBox* m_forecast;
    QLabel* m_message;
};

} // namespace lumaro::app
