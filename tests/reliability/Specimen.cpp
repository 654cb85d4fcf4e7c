// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/reliability/Specimen.h"

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QImageWriter>
#include <QPainter>

namespace lumaro::testing {

namespace {

const QByteArray kIdentityKey = QByteArrayLiteral("lumaro-id");

bool isIdentityChar(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '_';
}

} // namespace

QByteArray jpegWithIdentity(const QString& id, int shade)
{
    QImage image(48, 32, QImage::Format_RGB32);
    image.fill(QColor::fromHsv((shade * 37) % 360, 160, 200));
    QPainter painter(&image);
    painter.fillRect((shade * 7) % 40, 4, 8, 8, Qt::black);
    painter.end();
    image.setText(QString::fromLatin1(kIdentityKey), id);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpg");
    writer.setQuality(60);
    writer.write(image);
    return bytes;
}

QByteArray rawWithIdentity(const QString& id)
{
    return QByteArray("II*\0\x08\0\0\0", 8) + kIdentityKey + QByteArrayLiteral(": ") + id.toLatin1() + '\n' +
           QByteArray(2048, 'r');
}

std::optional<QString> identityIn(const QByteArray& bytes)
{
    const QByteArray marker = kIdentityKey + QByteArrayLiteral(": ");
    const qsizetype at = bytes.indexOf(marker);
    if (at < 0)
        return std::nullopt;
    qsizetype end = at + marker.size();
    while (end < bytes.size() && isIdentityChar(bytes.at(end)))
        ++end;
    if (end == at + marker.size())
        return std::nullopt;
    return QString::fromLatin1(bytes.mid(at + marker.size(), end - at - marker.size()));
}

QByteArray payloadOf(const QByteArray& bytes)
{
    if (!bytes.startsWith(QByteArrayLiteral("\xff\xd8")))
        return bytes;
    // Walk the segments up to the first scan; everything before it is metadata that edits may rewrite.
    qsizetype at = 2;
    while (at + 4 <= bytes.size()) {
        if (uchar(bytes.at(at)) != 0xff)
            return {};
        const uchar marker = uchar(bytes.at(at + 1));
        if (marker == 0xda)
            return bytes.mid(at);
        const int length = (uchar(bytes.at(at + 2)) << 8) | uchar(bytes.at(at + 3));
        at += 2 + length;
    }
    return {};
}

} // namespace lumaro::testing
