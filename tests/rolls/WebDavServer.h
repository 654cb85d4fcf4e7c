// SPDX-License-Identifier: GPL-3.0-or-later
// A real WebDAV server (rclone serve webdav) over a temporary folder, on 127.0.0.1 at a free port.
#pragma once

#include <QMap>
#include <QProcess>
#include <QString>

namespace lumaro::testing {

class WebDavServer
{
public:
    // `user`/`password` empty: no sign-in asked.
    explicit WebDavServer(QString root, QString user = {}, QString password = {});
    ~WebDavServer();

    bool start();
    void stop();
    QString url() const { return m_url; }
    // An rclone remote named `name` pointing here (no user config read), as environment variables.
    QMap<QString, QString> remote(const QString& name) const;

private:
    QString m_root;
    QString m_user;
    QString m_password;
    QProcess m_process;
    QString m_url;
};

} // namespace lumaro::testing
