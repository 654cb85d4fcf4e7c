// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/ByteCountFormatter.h"

#include <QLocale>

#include <cmath>

namespace lumaro::cards {

namespace {

QString number(double value, int decimals)
{
    QLocale locale(QLocale::English);
    locale.setNumberOptions(QLocale::DefaultNumberOptions);
    QString text = locale.toString(value, 'f', decimals);
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    return text;
}

} // namespace

QString ByteCountFormatter::string(qint64 bytes)
{
    if (bytes == 0)
        return QStringLiteral("Zero KB");
    const QString sign = bytes < 0 ? QStringLiteral("-") : QString();
    const double magnitude = std::abs(double(bytes));
    const double megabytes = std::round(magnitude / 1e5) / 10.0;
    if (megabytes < 1000.0)
        return sign + number(megabytes, 1) + QStringLiteral(" MB");
    return sign + number(magnitude / 1e9, 2) + QStringLiteral(" GB");
}

} // namespace lumaro::cards
