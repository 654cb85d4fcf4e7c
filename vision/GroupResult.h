// SPDX-License-Identifier: GPL-3.0-or-later
// One run of related files that share a group prefix.
#pragma once

#include "vision/FileInfo.h"

#include <QList>
#include <QString>

namespace lumaro::vision {

struct GroupResult
{
    QList<FileInfo> files; // in walk order
    QString number;        // "7", or "07" when there are ten groups or more
};

} // namespace lumaro::vision
