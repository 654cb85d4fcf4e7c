// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TiffOrientationPatch.h"

#include <QFile>
#include <QtEndian>

#include <optional>

namespace lumaro::platform {

namespace {

constexpr quint16 kOrientationTag = 0x0112;
constexpr quint16 kShortType = 3;

struct TagPlace
{
    qint64 valueOffset = 0;
    bool littleEndian = true;
    int value = 0;
};

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

quint16 read16(const QByteArray& bytes, qsizetype at, bool little)
{
    const auto* data = reinterpret_cast<const uchar*>(bytes.constData() + at);
    return little ? qFromLittleEndian<quint16>(data) : qFromBigEndian<quint16>(data);
}

quint32 read32(const QByteArray& bytes, qsizetype at, bool little)
{
    const auto* data = reinterpret_cast<const uchar*>(bytes.constData() + at);
    return little ? qFromLittleEndian<quint32>(data) : qFromBigEndian<quint32>(data);
}

std::optional<TagPlace> findOrientation(QFile& file, QString* error)
{
    const QByteArray header = file.read(8);
    if (header.size() < 8 || !(header.startsWith(QByteArray("II*\0", 4)) || header.startsWith(QByteArray("MM\0*", 4)))) {
        setError(error, QStringLiteral("not a TIFF-structured file"));
        return std::nullopt;
    }
    const bool little = header.at(0) == 'I';
    const quint32 ifd = read32(header, 4, little);
    if (!file.seek(ifd)) {
        setError(error, QStringLiteral("truncated file"));
        return std::nullopt;
    }
    const QByteArray countBytes = file.read(2);
    if (countBytes.size() < 2) {
        setError(error, QStringLiteral("truncated file"));
        return std::nullopt;
    }
    const quint16 count = read16(countBytes, 0, little);
    const QByteArray entries = file.read(qint64(count) * 12);
    for (qsizetype at = 0; at + 12 <= entries.size(); at += 12) {
        if (read16(entries, at, little) != kOrientationTag)
            continue;
        if (read16(entries, at + 2, little) != kShortType || read32(entries, at + 4, little) != 1) {
            setError(error, QStringLiteral("malformed orientation tag"));
            return std::nullopt;
        }
        return TagPlace{qint64(ifd) + 2 + at + 8, little, read16(entries, at + 8, little)};
    }
    setError(error, QStringLiteral("no orientation tag"));
    return std::nullopt;
}

} // namespace

int TiffOrientationPatch::read(const QString& path, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        setError(error, file.errorString());
        return 0;
    }
    const auto place = findOrientation(file, error);
    return place ? place->value : 0;
}

bool TiffOrientationPatch::apply(const QString& path, int (*turn)(int), QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite)) {
        setError(error, file.errorString());
        return false;
    }
    const auto place = findOrientation(file, error);
    if (!place)
        return false;
    uchar value[2];
    const auto next = quint16(turn(place->value >= 1 && place->value <= 8 ? place->value : 1));
    if (place->littleEndian)
        qToLittleEndian(next, value);
    else
        qToBigEndian(next, value);
    if (!file.seek(place->valueOffset) || file.write(reinterpret_cast<const char*>(value), 2) != 2 || !file.flush()) {
        setError(error, file.errorString());
        return false;
    }
    return true;
}

} // namespace lumaro::platform
