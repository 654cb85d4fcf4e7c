// SPDX-License-Identifier: GPL-3.0-or-later
// A one-line progress bar on standard error, drawn only when standard error is a terminal.
#pragma once

#include <QElapsedTimer>
#include <QString>

namespace lumaro::cli {

// Not thread-safe: call advance() from one thread (the command's). Redraws at most ten times a second and
// not at all for work that ends within half a second, so short runs and pipes stay clean.
class ProgressBar
{
public:
    ProgressBar(QString label, qint64 total);
    ~ProgressBar();

    void advance(qint64 by = 1);
    void finish();

private:
    void draw();

    QString m_label;
    qint64 m_total;
    qint64 m_done = 0;
    bool m_enabled;
    bool m_drawn = false;
    QElapsedTimer m_sinceStart;
    qint64 m_lastDrawMs = -1000;
};

} // namespace lumaro::cli
