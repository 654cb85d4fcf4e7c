// SPDX-License-Identifier: GPL-3.0-or-later
// A real HTTP server on 127.0.0.1 that replays one answer, for the forecast client and the home page.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

namespace lumaro::testing {

// An answer as Open-Meteo gives it for daily=weather_code,…&hourly=cloud_cover&timezone=auto (cut to two
// days, the second without a rain chance, and four hours).
extern const QByteArray openMeteoAnswer;

// Answers each request with `status` and `body`, or not at all when `silent`; counts the requests.
class ReplayHttpServer
{
public:
    ReplayHttpServer();

    QUrl url() const;

    int status = 200;
    QByteArray reason = "OK";
    QByteArray body = openMeteoAnswer;
    bool silent = false;
    int requests = 0;
    QByteArray lastRequest; // its request line

private:
    void answer(QTcpSocket* socket);

    QTcpServer m_server;
    QHash<QTcpSocket*, QByteArray> m_buffers;
};

} // namespace lumaro::testing
