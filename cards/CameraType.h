// SPDX-License-Identifier: GPL-3.0-or-later
// The camera families whose memory-card layout Lumaro recognises.
#pragma once

#include <QString>

namespace lumaro::cards {

enum class CameraType { canonR, canonIXUS, unknown };

// The family name shown to the user: "Canon R 系列", "Canon IXUS 系列"; empty for unknown.
QString familyName(CameraType type);

} // namespace lumaro::cards
