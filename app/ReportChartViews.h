// SPDX-License-Identifier: GPL-3.0-or-later
// The shooting report's charts as Qt Charts views: pace timeline, focal lengths, orientation, ISO, aperture.
#pragma once

#include "report/ShootingReport.h"

#include <QList>

class QWidget;

namespace lumaro::app {

// Main thread. One view per chart the report has data for, parented to `parent`.
QList<QWidget*> reportChartViews(const report::ShootingReport& report, QWidget* parent);

} // namespace lumaro::app
