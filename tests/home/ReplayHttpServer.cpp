// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/home/ReplayHttpServer.h"

#include <QTcpSocket>

namespace lumaro::testing {

const QByteArray openMeteoAnswer = R"({"latitude":48.86,"longitude":2.3399997,"generationtime_ms":0.21,
"utc_offset_seconds":7200,"timezone":"Europe/Paris","timezone_abbreviation":"CEST","elevation":43.0,
"hourly_units":{"time":"iso8601","cloud_cover":"%"},
"hourly":{"time":["2024-06-21T00:00","2024-06-21T01:00","2024-06-22T00:00","2024-06-22T01:00"],
"cloud_cover":[20,41,100,null]},
"daily_units":{"time":"iso8601","weather_code":"wmo code","temperature_2m_max":"°C","temperature_2m_min":"°C",
"precipitation_probability_max":"%","wind_speed_10m_max":"km/h"},
"daily":{"time":["2024-06-21","2024-06-22"],"weather_code":[2,61],"temperature_2m_max":[27.4,19.0],
"temperature_2m_min":[15.1,12.3],"precipitation_probability_max":[10,null],"wind_speed_10m_max":[11.2,24.5]}})";

ReplayHttpServer::ReplayHttpServer()
{
    m_server.listen(QHostAddress::LocalHost);
    QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection())
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { answer(socket); });
    });
}

QUrl ReplayHttpServer::url() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/v1/forecast").arg(m_server.serverPort()));
}

void ReplayHttpServer::answer(QTcpSocket* socket)
{
    QByteArray& buffer = m_buffers[socket];
    buffer += socket->readAll();
    if (!buffer.contains("\r\n\r\n"))
        return;
    ++requests;
    lastRequest = buffer.left(buffer.indexOf("\r\n"));
    buffer.clear();
    if (silent)
        return;
    socket->write("HTTP/1.1 " + QByteArray::number(status) + " " + reason +
                  "\r\nContent-Type: application/json\r\nContent-Length: " + QByteArray::number(body.size()) +
                  "\r\nConnection: close\r\n\r\n" + body);
    socket->disconnectFromHost();
}

} // namespace lumaro::testing
