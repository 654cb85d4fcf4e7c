// SPDX-License-Identifier: GPL-3.0-or-later
// How fast a shoot went: pictures per minute, the busiest minute, bursts and breaks.
#pragma once

#include "report/ExposureGrouper.h"
#include "report/ShootingReport.h"

namespace lumaro::report {

// Pure. Fills the time fields of `report` (first, last, shooting minutes, rates, timeline, busiest minute,
// bursts, gaps, exposures without time) from the exposures' capture times. A burst is a run of at least
// `burstMinimumFrames` frames of one camera, each within `burstGapSeconds` of the one before (within
// `wholeSecondBurstGap` when the camera writes whole seconds only); a break is a pause of at least
// `breakMinutes` between two exposures of any camera.
void measurePace(const QList<Exposure>& exposures, ShootingReport& report);

} // namespace lumaro::report
