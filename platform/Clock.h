// SPDX-License-Identifier: GPL-3.0-or-later
// Wall-clock time as seconds since 1970, injectable so that cooldowns are tested without waiting.
#pragma once

#include <functional>

namespace lumaro::platform {

using Clock = std::function<double()>;

// Seconds since 1970-01-01 00:00 UTC, with sub-millisecond resolution.
double systemSeconds();

inline Clock systemClock()
{
    return &systemSeconds;
}

} // namespace lumaro::platform
