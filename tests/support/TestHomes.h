// SPDX-License-Identifier: GPL-3.0-or-later
// Points HOME and the XDG homes of this process at folders below `root`, so no test touches the user's Trash,
// settings or database. Every test main() calls it before creating its application object.
#pragma once

#include <QString>

namespace lumaro::testing {

void pointHomesAt(const QString& root);

} // namespace lumaro::testing
