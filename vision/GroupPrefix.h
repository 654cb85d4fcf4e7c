// SPDX-License-Identifier: GPL-3.0-or-later
// The group prefix "_G" + number + "_" that grouping puts in front of a name and clean-prefix takes off again.
#pragma once

#include <QRegularExpression>
#include <QString>

namespace lumaro::vision {

// Stateless; any thread.
class GroupPrefix
{
public:
    // "^_G\d+_": a name that matches has been grouped already and is never grouped again.
    static const QRegularExpression& pattern();
    static bool isGrouped(const QString& fileName);
    // The name with its leading group prefix removed; the name unchanged when it has none. Only the first
    // prefix goes: grouping adds exactly one, so group then clean gives back the original name.
    static QString stripped(const QString& fileName);

    // The number of group `index` (1-based) among `groupCount` groups, padded to the digit count of
    // `groupCount` so that every prefix of one run has the same width and a name sort keeps the group order:
    // 9 groups -> "1" … "9"; 12 groups -> "01" … "12".
    static QString numberFor(int index, int groupCount);
    static QString make(const QString& number) { return QStringLiteral("_G") + number + QLatin1Char('_'); }
};

} // namespace lumaro::vision
