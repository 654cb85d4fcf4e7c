// SPDX-License-Identifier: GPL-3.0-or-later
// The grouping walk: splits files, in list order, into runs of neighbours from one source and of one people type.
#pragma once

#include "vision/FileInfo.h"
#include "vision/GroupResult.h"

#include <QList>

namespace lumaro::vision {

// Pure apart from its log lines; any thread. A file stays in the group of the file before it only when prefix
// and extension are equal, the name lengths differ by at most 2, and both are or both are not of people type
// (two files without a mark count as the same type). An empty list gives no groups.
class NameGrouper
{
public:
    static QList<GroupResult> group(const QList<FileInfo>& files);
};

} // namespace lumaro::vision
