// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/ResidentMemory.h"

#include <QFile>

namespace lumaro::testing {

qint64 residentBytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong() * 1024;
    }
    return 0;
}

} // namespace lumaro::testing
