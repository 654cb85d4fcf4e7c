// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/LogCapture.h"

#include "platform/Log.h"

namespace lumaro::testing {

LogCapture::LogCapture()
{
    platform::Log::setSink([this](const QString& line) {
        std::lock_guard lock(m_mutex);
        m_lines << line;
    });
}

LogCapture::~LogCapture()
{
    platform::Log::setSink(nullptr);
}

QStringList LogCapture::lines() const
{
    std::lock_guard lock(m_mutex);
    return m_lines;
}

bool LogCapture::contains(const QString& exactLine) const
{
    return lines().contains(exactLine);
}

int LogCapture::countStartingWith(const QString& prefix) const
{
    int count = 0;
    for (const QString& line : lines())
        count += line.startsWith(prefix) ? 1 : 0;
    return count;
}

} // namespace lumaro::testing
