// SPDX-License-Identifier: GPL-3.0-or-later
// What `group` and `ungroup` share: options, the folder's picture list, the printed renames and the exit code.
#pragma once

#include <QStringList>

namespace lumaro::cli {

enum class NameWork { group, ungroup };

// Prints each rename as "old -> new" on standard output (or one JSON object with --json), then the task's
// summary. Exit 0 when every file got its new name, 1 when some were skipped or failed, 2 on a bad folder or,
// for grouping, a folder without a vision index.
int runNameWork(NameWork work, const QStringList& arguments);

} // namespace lumaro::cli
