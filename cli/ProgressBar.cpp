// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ProgressBar.h"

#include "cli/CommandLine.h"
#include "platform/Terminal.h"

namespace lumaro::cli {

ProgressBar::ProgressBar(QString label, qint64 total)
    : m_label(std::move(label))
    , m_total(std::max<qint64>(total, 1))
    , m_enabled(platform::Terminal::isStandardErrorTerminal())
{
    m_sinceStart.start();
}

ProgressBar::~ProgressBar()
{
    finish();
}

void ProgressBar::advance(qint64 by)
{
    m_done = std::min(m_total, m_done + by);
    if (!m_enabled)
        return;
    const qint64 now = m_sinceStart.elapsed();
    if (now < 500 || now - m_lastDrawMs < 100)
        return;
    m_lastDrawMs = now;
    draw();
}

void ProgressBar::draw()
{
    const int width = std::max(10, std::min(40, platform::Terminal::standardErrorColumns() - 40));
    const int filled = int(width * m_done / m_total);
    standardError() << "\r" << m_label << " [" << QString(filled, QLatin1Char('#'))
                    << QString(width - filled, QLatin1Char('.')) << "] " << m_done << "/" << m_total;
    standardError().flush();
    m_drawn = true;
}

void ProgressBar::finish()
{
    if (!m_drawn)
        return;
    draw();
    standardError() << "\n";
    standardError().flush();
    m_drawn = false;
}

} // namespace lumaro::cli
