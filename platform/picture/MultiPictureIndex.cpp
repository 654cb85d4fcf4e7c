// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/picture/MultiPictureIndex.h"

#include <optional>

namespace lumaro::platform {

namespace {

constexpr quint16 mpEntryTag = 0xB002;
constexpr int mpEntryBytes = 16;

// Reads the TIFF-structured MPF block in the byte order its header names; every read is bounds-checked.
class TiffBlock
{
public:
    TiffBlock(const QByteArray& data, qsizetype start, qsizetype end)
        : m_data(data), m_start(start), m_end(end)
    {
        m_littleEndian = has(0, 4) && m_data.mid(m_start, 4) == QByteArrayLiteral("II*\0");
        m_valid = m_littleEndian || (has(0, 4) && m_data.mid(m_start, 4) == QByteArrayLiteral("MM\0*"));
    }

    bool isValid() const { return m_valid; }
    bool has(qint64 offset, qint64 bytes) const
    {
        return offset >= 0 && bytes >= 0 && m_start + offset + bytes <= m_end;
    }

    std::optional<quint32> read(qint64 offset, int bytes) const
    {
        if (!has(offset, bytes))
            return std::nullopt;
        quint32 value = 0;
        for (int i = 0; i < bytes; ++i) {
            const quint32 byte = quint8(m_data.at(m_start + offset + (m_littleEndian ? bytes - 1 - i : i)));
            value = (value << 8) | byte;
        }
        return value;
    }

private:
    const QByteArray& m_data;
    qsizetype m_start;
    qsizetype m_end;
    bool m_littleEndian = false;
    bool m_valid = false;
};

// Start and end (in `head`) of the APP2 segment's MPF block, after its "MPF\0" signature.
std::optional<std::pair<qsizetype, qsizetype>> findMpfBlock(const QByteArray& head)
{
    if (!head.startsWith("\xFF\xD8"))
        return std::nullopt;
    qsizetype at = 2;
    while (at + 4 <= head.size() && quint8(head.at(at)) == 0xFF) {
        const quint8 marker = quint8(head.at(at + 1));
        if (marker == 0xDA || marker == 0xD9) // the scan starts: no more metadata blocks
            return std::nullopt;
        const qsizetype length = (quint8(head.at(at + 2)) << 8) | quint8(head.at(at + 3));
        const qsizetype payload = at + 4;
        const qsizetype end = at + 2 + length;
        if (length < 2 || end > head.size())
            return std::nullopt;
        if (marker == 0xE2 && end - payload >= 4 && head.mid(payload, 4) == QByteArrayLiteral("MPF\0"))
            return std::pair{payload + 4, end};
        at = end;
    }
    return std::nullopt;
}

} // namespace

QList<EmbeddedImage> MultiPictureIndex::read(const QByteArray& head, qint64 fileSize)
{
    const auto block = findMpfBlock(head);
    if (!block)
        return {};
    const TiffBlock tiff(head, block->first, block->second);
    const auto ifd = tiff.read(4, 4);
    const auto entries = ifd ? tiff.read(*ifd, 2) : std::nullopt;
    if (!tiff.isValid() || !entries)
        return {};
    QList<EmbeddedImage> images;
    for (quint32 e = 0; e < *entries; ++e) {
        const qint64 entry = qint64(*ifd) + 2 + 12 * qint64(e);
        if (tiff.read(entry, 2) != mpEntryTag)
            continue;
        const auto count = tiff.read(entry + 4, 4);
        const auto list = tiff.read(entry + 8, 4);
        if (!count || !list || !tiff.has(*list, *count))
            return {};
        // Offsets count from the block's TIFF header; the first entry is the picture itself (offset 0).
        for (qint64 i = 1; i < qint64(*count) / mpEntryBytes; ++i) {
            const auto size = tiff.read(*list + i * mpEntryBytes + 4, 4);
            const auto offset = tiff.read(*list + i * mpEntryBytes + 8, 4);
            const qint64 start = qint64(block->first) + qint64(offset.value_or(0));
            if (!size || !offset || *offset == 0 || *size == 0 || start < qint64(block->second) ||
                start + qint64(*size) > fileSize)
                continue;
            images.append({start, qint64(*size)});
        }
        return images;
    }
    return images;
}

} // namespace lumaro::platform
