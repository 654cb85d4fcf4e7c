// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/IndexRunOrder.h"

#include <QFileInfo>

namespace lumaro::vision {

namespace {

QDateTime trusted(const QDateTime& time, const QDateTime& now)
{
    if (!time.isValid() || time > now.addSecs(IndexRunOrder::kClockSkewSeconds))
        return {};
    return time;
}

} // namespace

bool IndexRunOrder::isNewer(const IndexRunStamp& a, const IndexRunStamp& b, const QDateTime& now)
{
    const QDateTime ta = trusted(a.generatedAt, now), tb = trusted(b.generatedAt, now);
    if (ta.isValid() != tb.isValid())
        return ta.isValid();
    if (ta.isValid() && ta != tb)
        return ta > tb;
    return QFileInfo(a.path).fileName() > QFileInfo(b.path).fileName();
}

} // namespace lumaro::vision
