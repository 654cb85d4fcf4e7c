// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cards/CardLayouts.h"

#include "tests/support/HostilePictures.h"
#include "tests/support/LittleEndian.h"

namespace lumaro::testing {

namespace {

QByteArray exifSegment(const QByteArray& make, const QByteArray& model)
{
    QByteArray tiff("II*\0", 4);
    tiff += littleEndian32(8);
    tiff += littleEndian16(2);
    QByteArray data;
    const quint32 dataStart = 8 + 2 + 2 * 12 + 4;
    // An ASCII value of up to four bytes sits in the entry itself; a longer one lives after the IFD.
    const auto entry = [&](quint16 tag, const QByteArray& value) {
        const QByteArray text = value + '\0';
        tiff += littleEndian16(tag);
        tiff += littleEndian16(2);
        tiff += littleEndian32(quint32(text.size()));
        if (text.size() <= 4) {
            tiff += text + QByteArray(4 - text.size(), '\0');
            return;
        }
        tiff += littleEndian32(dataStart + quint32(data.size()));
        data += text;
    };
    entry(0x010f, make);
    entry(0x0110, model);
    tiff += littleEndian32(0);
    tiff += data;
    const QByteArray payload = QByteArray("Exif\0\0", 6) + tiff;
    QByteArray segment("\xff\xe1", 2);
    const int length = int(payload.size()) + 2;
    segment.append(char(length >> 8));
    segment.append(char(length & 0xff));
    return segment + payload;
}

} // namespace

QByteArray plainJpeg()
{
    return jpegOfSize({32, 24}, Qt::darkGreen);
}

QByteArray jpegWithCamera(const QByteArray& make, const QByteArray& model)
{
    const QByteArray jpeg = plainJpeg();
    return jpeg.left(2) + exifSegment(make, model) + jpeg.mid(2);
}

void buildCanonRCard(TempFolder& card, const QString& root)
{
    card.write(root + QStringLiteral("/DCIM/CANONMSC/M3100.CTG"));
    card.makeFolder(root + QStringLiteral("/MISC"));
    card.makeFolder(root + QStringLiteral("/DCIM/100CANON"));
}

void buildCanonIxusCard(TempFolder& card, const QString& root)
{
    card.makeFolder(root + QStringLiteral("/DCIM/131CANON"));
}

} // namespace lumaro::testing
