// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/ReasonFormat.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace lumaro::pose {

QString shortestDecimal(double value)
{
    if (std::isnan(value))
        return QStringLiteral("nan");
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    QString text = QString::fromLatin1(buffer, end - buffer);
    if (!text.contains(QLatin1Char('.')) && !text.contains(QLatin1Char('e')))
        text += QStringLiteral(".0");
    return text;
}

QString printfFixed(double value, int decimals)
{
    char buffer[64];
    const int written = std::snprintf(buffer, sizeof buffer, "%.*f", decimals, value);
    if (written < 0 || written >= int(sizeof buffer))
        return QString::number(value, 'f', decimals);
    return QString::fromLatin1(buffer, written);
}

} // namespace lumaro::pose
