// SPDX-License-Identifier: GPL-3.0-or-later
// Captures the log lines written while it lives, so a test can assert on the system's own texts.
#pragma once

#include <QString>
#include <QStringList>

#include <mutex>

namespace lumaro::testing {

class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    QStringList lines() const;
    bool contains(const QString& exactLine) const;
    int countStartingWith(const QString& prefix) const;

private:
    mutable std::mutex m_mutex;
    QStringList m_lines;
};

} // namespace lumaro::testing
