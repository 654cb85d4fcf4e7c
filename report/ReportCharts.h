// SPDX-License-Identifier: GPL-3.0-or-later
// The report's charts as SVG, drawn by hand so that the HTML needs no script and the PDF the same pictures.
#pragma once

#include "report/ShootingReport.h"

#include <QList>
#include <QString>

namespace lumaro::report {

struct ReportChart
{
    QString title;
    QString svg; // a complete <svg> element, 640 × 240 user units
};

// Pure. The charts a report has data for, in reading order: pictures per minute, focal lengths, orientation,
// ISO, aperture, shutter speed. A chart without data is left out.
QList<ReportChart> reportCharts(const ShootingReport& report);

// One bar per value, labelled under the bar and with its count above it.
QString barChartSvg(const QList<CountedValue>& values, const QString& colour);

} // namespace lumaro::report
