// SPDX-License-Identifier: GPL-3.0-or-later
// Reads rclone's log as it arrives on standard error: error messages, transfer statistics and the plain lines
// it writes before its JSON log is set up.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

namespace lumaro::platform {

struct RcloneProgress
{
    qint64 bytes = 0;      // sent so far
    qint64 totalBytes = 0; // to send, as rclone knows it so far
    int transfers = 0;     // files sent
    int errors = 0;

    bool operator==(const RcloneProgress&) const = default;
};

// With --use-json-log rclone writes one JSON object per line; a line may arrive in pieces, and the last one
// may lack its newline (finish()). Error, critical and fatal lines give a message each ("object: message"
// when rclone names a file); a line with "stats" updates the progress and calls `progress`. A figure that is
// not a whole number from 0 up (a hand-made or damaged line) reads as 0. Any line that is not a JSON object
// is a plain line; the last one is kept for a failure rclone logged no error for. One thread.
class RcloneLogReader
{
public:
    explicit RcloneLogReader(std::function<void(const RcloneProgress&)> progress = {});

    // The next bytes of the log, cut anywhere.
    void feed(const QByteArray& bytes);
    // The end of the log: reads what is left after the last newline.
    void finish();

    const QStringList& errors() const { return m_errors; }
    const RcloneProgress& last() const { return m_last; }
    const QString& lastPlainLine() const { return m_lastPlainLine; }

private:
    void readLine(const QByteArray& line);

    std::function<void(const RcloneProgress&)> m_progress;
    QByteArray m_pending;
    QStringList m_errors;
    RcloneProgress m_last;
    QString m_lastPlainLine;
};

} // namespace lumaro::platform
