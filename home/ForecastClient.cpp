// SPDX-License-Identifier: GPL-3.0-or-later
#include "home/ForecastClient.h"

#include "platform/AppPaths.h"
#include "platform/Log.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSaveFile>
#include <QUrlQuery>

namespace lumaro::home {

namespace {

QString rounded(double degrees)
{
    return QString::number(degrees, 'f', 2);
}

} // namespace

QUrl ForecastClient::defaultBaseUrl()
{
    return QUrl(QStringLiteral("https://api.open-meteo.com/v1/forecast"));
}

ForecastClient::ForecastClient(QUrl baseUrl, platform::Clock clock, QString cacheFolder, QObject* parent)
    : QObject(parent), m_baseUrl(baseUrl.isEmpty() ? defaultBaseUrl() : std::move(baseUrl)),
      m_clock(clock ? std::move(clock) : platform::systemClock()),
      m_cacheFolder(cacheFolder.isEmpty() ? platform::AppPaths::cacheDir() + QStringLiteral("/forecast")
                                          : std::move(cacheFolder)),
      m_network(new QNetworkAccessManager(this))
{
    qRegisterMetaType<Forecast>();
}

ForecastClient::~ForecastClient()
{
    if (m_pending)
        m_pending->abort();
}

QUrl ForecastClient::requestUrl(const GeoPosition& position) const
{
    QUrl url = m_baseUrl;
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("latitude"), rounded(position.latitude));
    query.addQueryItem(QStringLiteral("longitude"), rounded(position.longitude));
    query.addQueryItem(QStringLiteral("daily"),
                       QStringLiteral("weather_code,temperature_2m_max,temperature_2m_min,"
                                      "precipitation_probability_max,wind_speed_10m_max"));
    query.addQueryItem(QStringLiteral("hourly"), QStringLiteral("cloud_cover"));
    query.addQueryItem(QStringLiteral("timezone"), QStringLiteral("auto"));
    query.addQueryItem(QStringLiteral("forecast_days"), QStringLiteral("16"));
    url.setQuery(query);
    return url;
}

QString ForecastClient::cacheFile(const GeoPosition& position) const
{
    return m_cacheFolder + QStringLiteral("/forecast_%1_%2.json")
                               .arg(rounded(position.latitude), rounded(position.longitude));
}

std::optional<Forecast> ForecastClient::cached(const GeoPosition& position) const
{
    QFile file(cacheFile(position));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    const double fetchedAt = root.value(QStringLiteral("fetchedAt")).toDouble();
    const double age = m_clock() - fetchedAt;
    if (age < 0 || age >= cacheSeconds)
        return std::nullopt;
    auto forecast = Forecast::parse(QJsonDocument(root.value(QStringLiteral("answer")).toObject()).toJson());
    if (forecast)
        forecast->fetchedAt = fetchedAt;
    return forecast;
}

void ForecastClient::store(const GeoPosition& position, const QByteArray& answer, double fetchedAt) const
{
    if (!QDir().mkpath(m_cacheFolder))
        return; // without a cache the next look only asks again
    QSaveFile file(cacheFile(position));
    if (!file.open(QIODevice::WriteOnly))
        return;
    const QJsonObject root{{QStringLiteral("fetchedAt"), fetchedAt},
                           {QStringLiteral("answer"), QJsonDocument::fromJson(answer).object()}};
    file.write(QJsonDocument(root).toJson(QJsonDocument::Compact));
    file.commit();
}

void ForecastClient::fetch(const GeoPosition& position)
{
    if (m_pending) {
        QNetworkReply* older = m_pending;
        m_pending = nullptr;
        older->disconnect(this);
        older->abort();
        older->deleteLater();
    }
    if (const auto forecast = cached(position)) {
        QMetaObject::invokeMethod(
            this, [this, forecast = *forecast] { Q_EMIT forecastReady(forecast); }, Qt::QueuedConnection);
        return;
    }
    QNetworkRequest request(requestUrl(position));
    request.setTransferTimeout(m_timeoutMs);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Lumaro"));
    QNetworkReply* reply = m_network->get(request);
    m_pending = reply;
    connect(reply, &QNetworkReply::finished, this, [this, reply, position] { finished(reply, position); });
}

void ForecastClient::finished(QNetworkReply* reply, const GeoPosition& position)
{
    reply->deleteLater();
    if (reply != m_pending)
        return;
    m_pending = nullptr;
    const QByteArray body = reply->isOpen() ? reply->readAll() : QByteArray();
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    QString reason;
    std::optional<Forecast> forecast;
    if (reply->error() == QNetworkReply::OperationCanceledError)
        reason = QStringLiteral("no answer within %1 s").arg(m_timeoutMs / 1000.0);
    else if (status != 0 && status != 200)
        reason = QStringLiteral("HTTP %1").arg(status);
    else if (reply->error() != QNetworkReply::NoError)
        reason = reply->errorString();
    else
        forecast = Forecast::parse(body, &reason);
    if (!forecast) {
        // The service explains a refused request in its body ({"error": true, "reason": …}).
        QString detail;
        if (status >= 400 && !Forecast::parse(body, &detail) && !detail.isEmpty() &&
            !detail.startsWith(QLatin1String("not JSON")))
            reason += QStringLiteral(": ") + detail;
        platform::Log::line(QStringLiteral("Forecast"), QStringLiteral("天气预报不可用: %1").arg(reason));
        Q_EMIT forecastUnavailable(reason);
        return;
    }
    forecast->fetchedAt = m_clock();
    store(position, body, forecast->fetchedAt);
    Q_EMIT forecastReady(*forecast);
}

} // namespace lumaro::home

// In this object rather than the module's shared moc file, which every QObject of the module pulls in: only
// what uses it loads Qt Network (lumaro-cli starts without it).
#include "moc_ForecastClient.cpp"
