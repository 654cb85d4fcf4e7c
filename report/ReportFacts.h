// SPDX-License-Identifier: GPL-3.0-or-later
// The report's figures in words, one row each, shared by the command line, the HTML, the PDF and the panel.
#pragma once

#include "report/ShootingReport.h"

#include <QList>
#include <QString>

namespace lumaro::report {

struct ReportFact
{
    QString section; // "Shoot", "Pace", "Gear", "Culling"
    QString label;
    QString value;
};

// Pure. Rows in reading order; a row without data says so rather than disappearing where a reader would
// look for it (no ratings, no shutter counter).
QList<ReportFact> reportFacts(const ShootingReport& report);

} // namespace lumaro::report
