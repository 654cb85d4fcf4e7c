// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/rolls/WebDavServer.h"

#include <QDeadlineTimer>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

namespace lumaro::testing {

WebDavServer::WebDavServer(QString root, QString user, QString password)
    : m_root(std::move(root)), m_user(std::move(user)), m_password(std::move(password))
{
}

WebDavServer::~WebDavServer()
{
    stop();
}

bool WebDavServer::start()
{
    QStringList arguments{QStringLiteral("serve"), QStringLiteral("webdav"), m_root, QStringLiteral("--addr"),
                          m_url.isEmpty() ? QStringLiteral("127.0.0.1:0") : QUrl(m_url).authority()};
    if (!m_user.isEmpty())
        arguments << QStringLiteral("--user") << m_user << QStringLiteral("--pass") << m_password;
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QStandardPaths::findExecutable(QStringLiteral("rclone")), arguments);
    static const QRegularExpression started(QStringLiteral(R"(started on \[?(http://127\.0\.0\.1:\d+/))"));
    QByteArray said;
    const QDeadlineTimer deadline(20000);
    while (!deadline.hasExpired() && m_process.waitForReadyRead(int(deadline.remainingTime()))) {
        said += m_process.readAll();
        if (const auto match = started.match(QString::fromUtf8(said)); match.hasMatch()) {
            m_url = match.captured(1);
            return true;
        }
    }
    return false;
}

void WebDavServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

QMap<QString, QString> WebDavServer::remote(const QString& name) const
{
    const QString prefix = QStringLiteral("RCLONE_CONFIG_") + name.toUpper() + QLatin1Char('_');
    return {{QStringLiteral("RCLONE_CONFIG"), m_root + QStringLiteral("/../no-rclone.conf")},
            {prefix + QStringLiteral("TYPE"), QStringLiteral("webdav")},
            {prefix + QStringLiteral("URL"), m_url}};
}

} // namespace lumaro::testing
