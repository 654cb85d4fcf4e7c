// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/HostilePictures.h"

#include "tests/support/LittleEndian.h"

#include <QBuffer>
#include <QImage>
#include <QtEndian>

#include <vector>

namespace lumaro::testing {

namespace {

void appendLittle24(QByteArray& bytes, quint32 value)
{
    bytes.append(char(value & 0xFF)).append(char((value >> 8) & 0xFF)).append(char((value >> 16) & 0xFF));
}

void appendBig32(QByteArray& bytes, quint32 value)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(char((value >> shift) & 0xFF));
}

void appendIfdEntry(QByteArray& bytes, quint16 tag, quint16 type, quint32 count, quint32 value)
{
    bytes += littleEndian16(tag);
    bytes += littleEndian16(type);
    bytes += littleEndian32(count);
    bytes += littleEndian32(value);
}

QByteArray encoded(const QImage& image, const char* format, int quality = -1)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, quality);
    return bytes;
}

QImage greyFrame(QSize size, int frame)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(QColor::fromHsv(0, 0, 40 + 60 * frame % 200));
    return image;
}

quint32 crc32(const QByteArray& bytes)
{
    quint32 crc = 0xFFFFFFFFu;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    QByteArray chunk;
    appendBig32(chunk, quint32(data.size()));
    chunk += type + data;
    appendBig32(chunk, crc32(type + data));
    return chunk;
}

// The chunks of a PNG as (type, data) pairs, signature left out.
std::vector<std::pair<QByteArray, QByteArray>> pngChunks(const QByteArray& png)
{
    std::vector<std::pair<QByteArray, QByteArray>> chunks;
    for (qsizetype at = 8; at + 12 <= png.size();) {
        const auto length = qsizetype(qFromBigEndian<quint32>(png.constData() + at));
        chunks.emplace_back(png.mid(at + 4, 4), png.mid(at + 8, length));
        at += 12 + length;
    }
    return chunks;
}

QByteArray frameControl(quint32 sequence, QSize size)
{
    QByteArray data;
    appendBig32(data, sequence);
    appendBig32(data, quint32(size.width()));
    appendBig32(data, quint32(size.height()));
    appendBig32(data, 0);                                                  // x offset
    appendBig32(data, 0);                                                  // y offset
    data.append(char(0)).append(char(1)).append(char(0)).append(char(10)); // delay 1/10 s
    data.append(char(0)).append(char(0));                                  // dispose none, blend source
    return data;
}

// The image chunk ("VP8 " or "VP8L", header and padding included) of a single-frame WebP.
QByteArray webpImageChunk(const QByteArray& webp)
{
    for (qsizetype at = 12; at + 8 <= webp.size();) {
        const auto length = qsizetype(qFromLittleEndian<quint32>(webp.constData() + at + 4));
        const QByteArray type = webp.mid(at, 4);
        const qsizetype whole = 8 + length + (length & 1);
        if (type == "VP8 " || type == "VP8L")
            return webp.mid(at, whole);
        at += whole;
    }
    return {};
}

QByteArray riffChunk(const QByteArray& type, const QByteArray& data)
{
    QByteArray chunk = type;
    chunk += littleEndian32(quint32(data.size()));
    chunk += data;
    if (data.size() & 1)
        chunk.append(char(0));
    return chunk;
}

} // namespace

QByteArray selfReferencingCr2()
{
    constexpr quint32 kIfd = 16;
    constexpr quint32 kWrapping = 0xFFFFFF00u;
    QByteArray bytes("II*\0", 4);
    bytes += littleEndian32(kIfd);
    bytes += QByteArray("CR\x02\0", 4);
    bytes += littleEndian32(0); // no raw IFD
    bytes += littleEndian16(5);
    appendIfdEntry(bytes, 0x0100, 4, 1, 8);         // width
    appendIfdEntry(bytes, 0x0101, 4, 1, 8);         // height
    appendIfdEntry(bytes, 0x0103, 3, 1, 6);         // old-style JPEG compression
    appendIfdEntry(bytes, 0x0201, 4, 1, kWrapping); // JPEG preview offset
    appendIfdEntry(bytes, 0x0202, 4, 1, kWrapping); // JPEG preview length
    bytes += littleEndian32(kIfd);                    // the next IFD is this one again
    return bytes;
}

QByteArray jpegOfSize(QSize size, QColor color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return encoded(image, "jpg", 90);
}

QByteArray jpegClaimingSize(QSize claimed)
{
    QByteArray bytes = jpegOfSize({8, 8});
    // Baseline frame header: FF C0, length (2), precision (1), height (2), width (2).
    const qsizetype frame = bytes.indexOf(QByteArray("\xFF\xC0", 2));
    if (frame < 0)
        return bytes;
    bytes[frame + 5] = char((claimed.height() >> 8) & 0xFF);
    bytes[frame + 6] = char(claimed.height() & 0xFF);
    bytes[frame + 7] = char((claimed.width() >> 8) & 0xFF);
    bytes[frame + 8] = char(claimed.width() & 0xFF);
    return bytes;
}

QByteArray multiPageTiff(int frames, QSize size)
{
    const auto pixelBytes = quint32(size.width() * size.height() * 3);
    constexpr quint16 kEntries = 10;
    constexpr quint32 kIfdBytes = 2 + kEntries * 12 + 4;
    QByteArray bytes("II*\0", 4);
    bytes += littleEndian32(8);
    for (int frame = 0; frame < frames; ++frame) {
        const auto ifd = quint32(bytes.size());
        const quint32 bits = ifd + kIfdBytes;
        const quint32 pixels = bits + 6;
        const quint32 next = frame + 1 < frames ? pixels + pixelBytes : 0;
        bytes += littleEndian16(kEntries);
        appendIfdEntry(bytes, 256, 4, 1, quint32(size.width()));
        appendIfdEntry(bytes, 257, 4, 1, quint32(size.height()));
        appendIfdEntry(bytes, 258, 3, 3, bits); // 8 bits per sample, three samples
        appendIfdEntry(bytes, 259, 3, 1, 1);    // uncompressed
        appendIfdEntry(bytes, 262, 3, 1, 2);    // RGB
        appendIfdEntry(bytes, 273, 4, 1, pixels);
        appendIfdEntry(bytes, 277, 3, 1, 3);
        appendIfdEntry(bytes, 278, 4, 1, quint32(size.height()));
        appendIfdEntry(bytes, 279, 4, 1, pixelBytes);
        appendIfdEntry(bytes, 284, 3, 1, 1); // chunky
        bytes += littleEndian32(next);
        for (int sample = 0; sample < 3; ++sample)
            bytes += littleEndian16(8);
        bytes += QByteArray(qsizetype(pixelBytes), char(40 + 60 * frame % 200));
    }
    return bytes;
}

QByteArray animatedPng(int frames, QSize size)
{
    QByteArray result("\x89PNG\r\n\x1A\n", 8);
    quint32 sequence = 0;
    const auto first = pngChunks(encoded(greyFrame(size, 0), "png"));
    for (const auto& [type, data] : first) {
        if (type == "IEND")
            break;
        if (type == "IDAT" && sequence == 0) {
            QByteArray control;
            appendBig32(control, quint32(frames));
            appendBig32(control, 0); // loop for ever
            result += pngChunk("acTL", control);
            result += pngChunk("fcTL", frameControl(sequence++, size));
        }
        result += pngChunk(type, data);
    }
    for (int frame = 1; frame < frames; ++frame) {
        result += pngChunk("fcTL", frameControl(sequence++, size));
        for (const auto& [type, data] : pngChunks(encoded(greyFrame(size, frame), "png"))) {
            if (type != "IDAT")
                continue;
            QByteArray frameData;
            appendBig32(frameData, sequence++);
            result += pngChunk("fdAT", frameData + data);
        }
    }
    return result + pngChunk("IEND", {});
}

QByteArray animatedWebp(int frames, QSize size)
{
    QByteArray canvas;
    canvas.append(char(0x02)).append(3, char(0)); // animation flag, reserved
    appendLittle24(canvas, quint32(size.width() - 1));
    appendLittle24(canvas, quint32(size.height() - 1));
    QByteArray animation;
    animation += littleEndian32(0xFFFFFFFFu); // background
    animation += littleEndian16(0);           // loop for ever
    QByteArray body = QByteArray("WEBP") + riffChunk("VP8X", canvas) + riffChunk("ANIM", animation);
    for (int frame = 0; frame < frames; ++frame) {
        QByteArray header;
        appendLittle24(header, 0); // x / 2
        appendLittle24(header, 0); // y / 2
        appendLittle24(header, quint32(size.width() - 1));
        appendLittle24(header, quint32(size.height() - 1));
        appendLittle24(header, 100); // ms
        header.append(char(0));      // blend, keep
        body += riffChunk("ANMF", header + webpImageChunk(encoded(greyFrame(size, frame), "webp", 100)));
    }
    QByteArray file("RIFF");
    file += littleEndian32(quint32(body.size()));
    return file + body;
}

} // namespace lumaro::testing
