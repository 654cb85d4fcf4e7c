// SPDX-License-Identifier: GPL-3.0-or-later
// A real storage server (rclone serve webdav or sftp) over a temporary folder, on 127.0.0.1 at a free port.
#pragma once

#include <QMap>
#include <QProcess>
#include <QString>

namespace lumaro::testing {

class RcloneServer
{
public:
    enum class Protocol
    {
        webdav,
        sftp
    };

    // `user`/`password` empty: no sign-in asked.
    explicit RcloneServer(QString root, QString user = {}, QString password = {},
                          Protocol protocol = Protocol::webdav);
    ~RcloneServer();

    // Again after stop(): on the same address.
    bool start();
    void stop();
    // webdav: the server's URL; sftp: host:port.
    QString address() const { return m_address; }
    // For a kill from another thread, as a crash would come.
    qint64 processId() const { return m_process.processId(); }
    // An rclone remote named `name` pointing here, without the server's user (no user config read), as
    // environment variables.
    QMap<QString, QString> remote(const QString& name) const;

private:
    QString m_root;
    QString m_user;
    QString m_password;
    Protocol m_protocol;
    QProcess m_process;
    QString m_address;
};

} // namespace lumaro::testing
