// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/picture/CameraPreview.h"

#include "platform/picture/JpegDecoder.h"
#include "platform/picture/MultiPictureIndex.h"

namespace lumaro::platform {

namespace {

// Enough of a preview's start for its frame header.
constexpr qint64 previewHeadBytes = 64 * 1024;

QByteArray readAt(QFile& file, qint64 offset, qint64 bytes)
{
    if (!file.seek(offset))
        return {};
    return file.read(bytes);
}

// Same width:height within 1 %, so a letterboxed or cropped preview never stands in for the picture.
bool sameShape(QSize a, QSize b)
{
    return std::abs(qint64(a.width()) * b.height() - qint64(b.width()) * a.height()) <=
           qint64(a.width()) * b.height() / 100;
}

} // namespace

std::optional<QImage> CameraPreview::decode(QFile& file, const QByteArray& head, int maxSide)
{
    if (maxSide <= 0)
        return std::nullopt;
    const auto pictureSize = JpegDecoder::size(head);
    if (!pictureSize)
        return std::nullopt;
    std::optional<EmbeddedImage> best;
    qint64 bestPixels = 0;
    for (const EmbeddedImage& image : MultiPictureIndex::read(head, file.size())) {
        const auto size =
            JpegDecoder::size(readAt(file, image.offset, std::min(image.size, previewHeadBytes)));
        if (!size || std::max(size->width(), size->height()) < maxSide || !sameShape(*size, *pictureSize))
            continue;
        const qint64 pixels = qint64(size->width()) * size->height();
        if (!best || pixels < bestPixels) {
            best = image;
            bestPixels = pixels;
        }
    }
    if (!best)
        return std::nullopt;
    return JpegDecoder::decode(readAt(file, best->offset, best->size), maxSide);
}

} // namespace lumaro::platform
