// SPDX-License-Identifier: GPL-3.0-or-later
// How numbers are written into the rules' reason sentences, which users and logs read as they stand.
#pragma once

#include <QString>

namespace lumaro::pose {

// A double in its shortest round-trip decimal form, always with a fraction or an exponent: 40 → "40.0",
// 37.5 → "37.5", 1e16 → "1e+16".
QString shortestDecimal(double value);
// C printf fixed-point formatting ("%.3f", "%.1f"): round to nearest, a leading minus for negatives.
QString printfFixed(double value, int decimals);

} // namespace lumaro::pose
