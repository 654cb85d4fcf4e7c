// SPDX-License-Identifier: GPL-3.0-or-later
// One file a batch (import, RAW pick, clean) could not handle, and why; the batch went on without it.
#pragma once

#include <QString>

namespace lumaro::cards {

struct FileFailure
{
    QString source; // the file the batch was handling
    QString error;
};

} // namespace lumaro::cards
