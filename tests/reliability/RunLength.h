// SPDX-License-Identifier: GPL-3.0-or-later
// How long the randomised and kill tests run: short in the suite, long when a soak script asks through the
// environment (LUMARO_RELIABILITY_SEED, LUMARO_KILLS, LUMARO_MODEL_STEPS).
#pragma once

#include <QtGlobal>

namespace lumaro::testing {

inline int runLength(const char* variable, int suiteDefault)
{
    bool ok = false;
    const int value = qEnvironmentVariableIntValue(variable, &ok);
    return ok && value > 0 ? value : suiteDefault;
}

inline quint32 reliabilitySeed()
{
    return quint32(runLength("LUMARO_RELIABILITY_SEED", 20240101));
}

} // namespace lumaro::testing
