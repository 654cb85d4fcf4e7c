// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/GroupPrefix.h"

namespace lumaro::vision {

const QRegularExpression& GroupPrefix::pattern()
{
    static const QRegularExpression expression(QStringLiteral("^_G\\d+_"));
    return expression;
}

bool GroupPrefix::isGrouped(const QString& fileName)
{
    return pattern().match(fileName).hasMatch();
}

QString GroupPrefix::stripped(const QString& fileName)
{
    const QRegularExpressionMatch match = pattern().match(fileName);
    if (!match.hasMatch())
        return fileName;
    return fileName.mid(match.capturedLength());
}

QString GroupPrefix::numberFor(int index, int groupCount)
{
    const int width = int(QString::number(groupCount).size());
    if (width < 2)
        return QString::number(index);
    return QString::asprintf(("%0" + std::to_string(width) + "d").c_str(), index);
}

} // namespace lumaro::vision
