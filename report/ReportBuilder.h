// SPDX-License-Identifier: GPL-3.0-or-later
// Turns the files read from a folder into its shooting report.
#pragma once

#include "report/ShootScanner.h"
#include "report/ShootingReport.h"

namespace lumaro::report {

// Pure: the same files give the same report.
class ReportBuilder
{
public:
    static ShootingReport build(const QString& folder, bool deep, const ScanResult& scan);
    // "1/250 s", "2 s", "0.8 s".
    static QString shutterLabel(double seconds);
};

} // namespace lumaro::report
