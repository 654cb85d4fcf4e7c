// SPDX-License-Identifier: GPL-3.0-or-later
// This installation's own identifier: a random UUID made once in the app's data folder, never derived from
// the machine (no machine-id, no hardware serials), so it tells remote albums apart without tracking anyone.
#pragma once

#include <QString>

namespace lumaro::platform {

class DeviceIdentity
{
public:
    // The identifier, made and stored on first use; empty only when the data folder cannot be written.
    static QString identifier(QString* error = nullptr);
};

} // namespace lumaro::platform
