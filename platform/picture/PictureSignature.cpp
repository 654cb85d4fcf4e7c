// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/picture/PictureSignature.h"

#include "platform/files/FileNameCodec.h"

#include <QFile>
#include <QImageReader>
#include <QtEndian>

#include <algorithm>

namespace lumaro::platform {

namespace {

bool hasAt(const QByteArray& head, qsizetype at, QByteArrayView magic)
{
    return head.size() >= at + magic.size() && QByteArrayView(head).sliced(at, magic.size()) == magic;
}

quint32 bigEndian32(const QByteArray& bytes, qsizetype at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

quint32 littleEndian32(const QByteArray& bytes, qsizetype at)
{
    return qFromLittleEndian<quint32>(bytes.constData() + at);
}

// The frames an APNG announces in its acTL chunk, which comes before the first IDAT; 1 without one.
int pngFrames(QFile& file)
{
    qint64 at = 8;
    while (file.seek(at)) {
        const QByteArray chunk = file.read(12);
        if (chunk.size() < 8)
            return 1;
        const quint32 length = bigEndian32(chunk, 0);
        const QByteArrayView type = QByteArrayView(chunk).sliced(4, 4);
        if (type == "acTL")
            return chunk.size() == 12
                       ? int(std::max<quint32>(1, std::min<quint32>(bigEndian32(chunk, 8), 1 << 20)))
                       : 1;
        if (type == "IDAT" || type == "IEND")
            return 1;
        at += 12 + qint64(length);
    }
    return 1;
}

// An animated WebP sets the animation flag of its VP8X chunk and carries one ANMF chunk per frame.
int webpFrames(QFile& file)
{
    const QByteArray head = file.read(21);
    if (!hasAt(head, 12, "VP8X") || head.size() < 21 || !(uchar(head[20]) & 0x02))
        return 1;
    int frames = 0;
    qint64 at = 12;
    while (file.seek(at)) {
        const QByteArray chunk = file.read(8);
        if (chunk.size() < 8)
            break;
        if (QByteArrayView(chunk).first(4) == "ANMF")
            ++frames;
        at += 8 + qint64(littleEndian32(chunk, 4)) + (littleEndian32(chunk, 4) & 1);
    }
    return std::max(frames, 2); // flagged as animated: never treated as a still, whatever its chunks say
}

// Opened by the name's own bytes, so a name that is not UTF-8 is read like any other.
bool openByName(QFile& file, const QString& path)
{
    const int descriptor = FileNameCodec::openForReading(path);
    return descriptor >= 0 && file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}

} // namespace

PictureKind PictureSignature::kindOf(const QByteArray& head)
{
    if (hasAt(head, 0, "\xFF\xD8\xFF"))
        return PictureKind::jpeg;
    if (hasAt(head, 0, "\x89PNG\r\n\x1A\n"))
        return PictureKind::png;
    if (hasAt(head, 0, QByteArrayView("II*\0", 4)) || hasAt(head, 0, QByteArrayView("MM\0*", 4)))
        return hasAt(head, 8, "CR") ? PictureKind::cr2 : PictureKind::tiff;
    if (hasAt(head, 0, "RIFF") && hasAt(head, 8, "WEBP"))
        return PictureKind::webp;
    if (hasAt(head, 0, "GIF87a") || hasAt(head, 0, "GIF89a"))
        return PictureKind::gif;
    if (hasAt(head, 0, "BM"))
        return PictureKind::bmp;
    if (hasAt(head, 4, "ftyp")) {
        for (const char* brand : {"heic", "heix", "heim", "heis", "hevc", "hevx", "mif1", "msf1", "avif"}) {
            if (hasAt(head, 8, brand))
                return PictureKind::heif;
        }
    }
    return PictureKind::unknown;
}

PictureKind PictureSignature::kindOfFile(const QString& path)
{
    QFile file;
    if (!openByName(file, path))
        return PictureKind::unknown;
    return kindOf(file.read(kHeadBytes));
}

int PictureSignature::frameCount(const QString& path, PictureKind kind)
{
    QFile file;
    if (!openByName(file, path))
        return 0;
    switch (kind) {
    case PictureKind::png:
        return pngFrames(file);
    case PictureKind::webp:
        return webpFrames(file);
    case PictureKind::tiff: {
        QImageReader reader(&file, "tiff");
        return std::max(reader.imageCount(), 1);
    }
    default:
        return 1;
    }
}

} // namespace lumaro::platform
