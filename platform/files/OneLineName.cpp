// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/OneLineName.h"

namespace lumaro::platform {

namespace {

QString escapeOf(QChar c)
{
    if (c == QLatin1Char('\n'))
        return QStringLiteral("\\n");
    if (c == QLatin1Char('\t'))
        return QStringLiteral("\\t");
    return QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
}

} // namespace

QString OneLineName::of(const QString& name)
{
    QString shown;
    shown.reserve(name.size());
    for (const QChar c : name) {
        if (c.category() == QChar::Other_Control)
            shown += escapeOf(c);
        else
            shown += c;
    }
    return shown;
}

} // namespace lumaro::platform
