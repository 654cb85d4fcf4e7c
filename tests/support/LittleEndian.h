// SPDX-License-Identifier: GPL-3.0-or-later
// Little-endian integers as bytes, for the TIFF and EXIF blocks the tests build byte by byte.
#pragma once

#include <QByteArray>
#include <QtEndian>

namespace lumaro::testing {

inline QByteArray littleEndian16(quint16 value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

inline QByteArray littleEndian32(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

} // namespace lumaro::testing
