// SPDX-License-Identifier: GPL-3.0-or-later
// rclone as a child process: the one way Lumaro talks to the photographer's own storage (S3, B2, WebDAV,
// SFTP, Drive, Dropbox …). It is run without a shell, its JSON log is read for progress and errors, and no
// storage protocol is spoken here.
#pragma once

#include "platform/cloud/RcloneLogReader.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <functional>
#include <optional>

namespace lumaro::platform {

struct RcloneResult
{
    bool started = false; // false: rclone is not installed or could not be run
    int exitCode = -1;
    bool cancelled = false;
    // Stopped because nothing was sent for this long while something was left to send (0: not stopped).
    std::chrono::seconds stalledFor{0};
    QByteArray output;   // what rclone wrote to standard output (lsjson, about, link)
    QStringList errors;  // the messages of its error-level log lines, in order
    RcloneProgress last; // the last statistics it reported
    bool ok() const { return started && !cancelled && stalledFor.count() == 0 && exitCode == 0; }
    // The most telling reason for a failure, for a message.
    QString reason() const;
};

class Rclone
{
public:
    // `environment` is added to the process' own: remotes defined as RCLONE_CONFIG_<NAME>_<KEY>, secrets that
    // must never reach a file or the command line.
    explicit Rclone(QMap<QString, QString> environment = {});

    // Runs `rclone ARGUMENTS…` with a JSON log, calling `progress` on each statistics line (from this
    // thread); `cancel` stops the child. Blocking.
    RcloneResult run(const QStringList& arguments,
                     const std::function<void(const RcloneProgress&)>& progress = {},
                     const std::atomic_bool* cancel = nullptr, const QByteArray& input = {}) const;
    // This rclone with `more` variables on top of its own.
    Rclone with(const QMap<QString, QString>& more) const;
    // This rclone, stopping a transfer that sends nothing for `limit` (one minute unless told): rclone 1.60
    // waits for ever on an upload whose server died mid-way.
    Rclone withStallLimit(std::chrono::seconds limit) const;
    // A password in the obscured form rclone's config and environment take for `pass` keys.
    std::optional<QString> obscured(const QString& secret) const;

    // `rclone about REMOTE: --json`: the free bytes, when the backend tells.
    std::optional<qint64> freeBytes(const QString& remote, QString* error = nullptr) const;

    static bool isInstalled();

    // What `rclone about --json` says is free; nullopt when it does not say, or says something that is no
    // whole number of bytes from 0 up.
    static std::optional<qint64> freeBytesIn(const QByteArray& about);
    // Path → size of each file `rclone lsjson` lists; a file without a whole size from 0 up is left out (so
    // it counts as not there).
    static QHash<QString, qint64> fileSizesIn(const QByteArray& listing);

private:
    QMap<QString, QString> m_environment;
    std::chrono::seconds m_stallLimit{60};
};

} // namespace lumaro::platform
