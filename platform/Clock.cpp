// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Clock.h"

#include <chrono>

namespace lumaro::platform {

double systemSeconds()
{
    using namespace std::chrono;
    return duration<double>(system_clock::now().time_since_epoch()).count();
}

} // namespace lumaro::platform
