// SPDX-License-Identifier: GPL-3.0-or-later
// Which of two index runs of a folder is the newer one, the same for every reader of `_index`.
#pragma once

#include <QDateTime>
#include <QString>

namespace lumaro::vision {

struct IndexRunStamp
{
    QString path;
    QDateTime generatedAt; // invalid when missing or unreadable
};

// Stateless; any thread. Runs are ordered by "generatedAt"; a time that is missing, unreadable or later than
// `now` (a foreign or hand-edited file dated in the future) counts as older than every trusted time, so it
// can never hide a real run. Runs left equal keep the order of their file names, whose stamp grows with the
// run.
class IndexRunOrder
{
public:
    static bool isNewer(const IndexRunStamp& a, const IndexRunStamp& b, const QDateTime& now);
    // Writers stamp with their own clock; this much skew is still believed.
    static constexpr qint64 kClockSkewSeconds = 300;
};

} // namespace lumaro::vision
