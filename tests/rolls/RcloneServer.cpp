// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/rolls/RcloneServer.h"

#include "platform/cloud/Rclone.h"

#include <QDeadlineTimer>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

#include <utility>

namespace lumaro::testing {

RcloneServer::RcloneServer(QString root, QString user, QString password, Protocol protocol)
    : m_root(std::move(root)), m_user(std::move(user)), m_password(std::move(password)), m_protocol(protocol)
{
}

RcloneServer::~RcloneServer()
{
    stop();
}

bool RcloneServer::start()
{
    const bool sftp = m_protocol == Protocol::sftp;
    const QString listenOn = m_address.isEmpty() ? QStringLiteral("127.0.0.1:0")
                             : sftp              ? m_address
                                                 : QUrl(m_address).authority();
    QStringList arguments{QStringLiteral("serve"), sftp ? QStringLiteral("sftp") : QStringLiteral("webdav"),
                          m_root, QStringLiteral("--addr"), listenOn};
    if (!m_user.isEmpty())
        arguments << QStringLiteral("--user") << m_user << QStringLiteral("--pass") << m_password;
    else if (sftp)
        arguments << QStringLiteral("--no-auth");
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(QStandardPaths::findExecutable(QStringLiteral("rclone")), arguments);
    static const QRegularExpression webdavStarted(
        QStringLiteral(R"(started on \[?(http://127\.0\.0\.1:\d+/))"));
    static const QRegularExpression sftpStarted(
        QStringLiteral(R"(SFTP server listening on (127\.0\.0\.1:\d+))"));
    const QRegularExpression& started = sftp ? sftpStarted : webdavStarted;
    QByteArray said;
    // The first sftp server of a test home makes its host keys first.
    const QDeadlineTimer deadline(30000);
    while (!deadline.hasExpired() && m_process.waitForReadyRead(int(deadline.remainingTime()))) {
        said += m_process.readAll();
        if (const auto match = started.match(QString::fromUtf8(said)); match.hasMatch()) {
            m_address = match.captured(1);
            return true;
        }
    }
    return false;
}

void RcloneServer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.kill();
    m_process.waitForFinished();
}

QMap<QString, QString> RcloneServer::remote(const QString& name) const
{
    const QString prefix = QStringLiteral("RCLONE_CONFIG_") + name.toUpper() + QLatin1Char('_');
    QMap<QString, QString> variables{
        {QStringLiteral("RCLONE_CONFIG"), m_root + QStringLiteral("/../no-rclone.conf")}};
    if (m_protocol == Protocol::webdav) {
        variables.insert(prefix + QStringLiteral("TYPE"), QStringLiteral("webdav"));
        variables.insert(prefix + QStringLiteral("URL"), m_address);
        return variables;
    }
    const int colon = int(m_address.lastIndexOf(QLatin1Char(':')));
    variables.insert(prefix + QStringLiteral("TYPE"), QStringLiteral("sftp"));
    variables.insert(prefix + QStringLiteral("HOST"), m_address.left(colon));
    variables.insert(prefix + QStringLiteral("PORT"), m_address.mid(colon + 1));
    // An sftp client signs in as someone with something, or asks an ssh agent there is none of.
    variables.insert(prefix + QStringLiteral("USER"), QStringLiteral("nobody"));
    variables.insert(prefix + QStringLiteral("PASS"),
                     QString::fromUtf8(
                         platform::Rclone().run({QStringLiteral("obscure"), QStringLiteral("nobody")}).output)
                         .trimmed());
    return variables;
}

} // namespace lumaro::testing
