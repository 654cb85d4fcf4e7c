// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/library/DamagedDatabase.h"

#include <QFile>
#include <QtEndian>

namespace lumaro::testing {

bool damageTablePageHolding(const QString& databasePath, const QByteArray& marker)
{
    QFile file(databasePath);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    const QByteArray bytes = file.readAll();
    if (bytes.size() < 100)
        return false;
    const quint16 stored = qFromBigEndian<quint16>(bytes.constData() + 16);
    const qsizetype pageSize = stored == 1 ? 65536 : stored;
    constexpr char tableLeaf = 0x0D;
    for (qsizetype page = 0; pageSize > 0 && page + pageSize <= bytes.size(); page += pageSize) {
        const qsizetype header = page == 0 ? 100 : page; // page 1 starts with the file header
        if (bytes.at(header) != tableLeaf || bytes.mid(page, pageSize).indexOf(marker) < 0)
            continue;
        file.seek(header + 8); // the cell pointer array follows the 8-byte leaf page header
        return file.write("\xFF\xF0", 2) == 2;
    }
    return false;
}

} // namespace lumaro::testing
