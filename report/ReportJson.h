// SPDX-License-Identifier: GPL-3.0-or-later
// The shooting report as JSON, for scripts (lumaro-cli report --json).
#pragma once

#include "report/ShootingReport.h"

#include <QJsonObject>

namespace lumaro::report {

// Times are the camera's own clock, "yyyy-MM-ddTHH:mm:ss.zzz" without a zone; absent values are null.
QJsonObject reportToJson(const ShootingReport& report);

} // namespace lumaro::report
