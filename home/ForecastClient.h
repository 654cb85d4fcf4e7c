// SPDX-License-Identifier: GPL-3.0-or-later
// Fetches the week's weather at a place from Open-Meteo's keyless forecast service, keeping each answer for
// three hours in the application's cache folder.
#pragma once

#include "home/Forecast.h"
#include "platform/Clock.h"

#include <QObject>
#include <QPointer>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

namespace lumaro::home {

// Main thread; never blocks: fetch() answers with exactly one of forecastReady() or forecastUnavailable(),
// always after it returned (a cached answer too). A newer fetch() abandons the older one, whose answer is
// dropped. A cached answer younger than `cacheSeconds` on the injected clock is used without a request; it is
// keyed by the place rounded to 0.01° (about a kilometre). A request that has not finished after `timeoutMs`,
// an HTTP error or an answer that is not a forecast make the forecast unavailable (and nothing is cached).
class ForecastClient : public QObject
{
    Q_OBJECT
public:
    static constexpr double cacheSeconds = 3 * 3600;
    static QUrl defaultBaseUrl(); // https://api.open-meteo.com/v1/forecast

    // An empty URL, clock or folder: the service's own, the system clock, ~/.cache/lumaro/forecast.
    explicit ForecastClient(QUrl baseUrl = defaultBaseUrl(), platform::Clock clock = platform::systemClock(),
                            QString cacheFolder = {}, QObject* parent = nullptr);
    ~ForecastClient() override;

    void setTimeout(int milliseconds) { m_timeoutMs = milliseconds; }
    void fetch(const GeoPosition& position);
    // The URL asked for `position` (the tests' server and a log line read it).
    QUrl requestUrl(const GeoPosition& position) const;
    QString cacheFile(const GeoPosition& position) const;

Q_SIGNALS:
    void forecastReady(const lumaro::home::Forecast& forecast);
    void forecastUnavailable(const QString& reason);

private:
    std::optional<Forecast> cached(const GeoPosition& position) const;
    void store(const GeoPosition& position, const QByteArray& answer, double fetchedAt) const;
    void finished(QNetworkReply* reply, const GeoPosition& position);

    QUrl m_baseUrl;
    platform::Clock m_clock;
    QString m_cacheFolder;
    int m_timeoutMs = 15'000;
    QNetworkAccessManager* m_network;
    QPointer<QNetworkReply> m_pending;
};

} // namespace lumaro::home
