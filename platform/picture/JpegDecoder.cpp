// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/picture/JpegDecoder.h"

#include "platform/picture/FittedSize.h"
#include "platform/picture/HugePages.h"

#include <turbojpeg.h>

#include <memory>

namespace lumaro::platform {

namespace {

struct HandleCloser
{
    void operator()(void* handle) const { tjDestroy(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

const unsigned char* bytes(const QByteArray& data)
{
    return reinterpret_cast<const unsigned char*>(data.constData());
}

// The smallest scaling factor whose output still has a long side of at least `maxSide`.
tjscalingfactor chooseScale(int width, int height, int maxSide)
{
    tjscalingfactor best{1, 1};
    if (maxSide <= 0)
        return best;
    int count = 0;
    const tjscalingfactor* factors = tjGetScalingFactors(&count);
    int bestLong = std::max(width, height);
    for (int i = 0; i < count; ++i) {
        const tjscalingfactor f = factors[i];
        if (f.num > f.denom)
            continue;
        const int longSide = std::max(TJSCALED(width, f), TJSCALED(height, f));
        if (longSide >= maxSide && longSide < bestLong) {
            best = f;
            bestLong = longSide;
        }
    }
    return best;
}

} // namespace

QImage fitWithin(const QImage& image, int maxSide)
{
    if (maxSide <= 0 || image.isNull() || std::max(image.width(), image.height()) <= maxSide)
        return image;
    return image.scaled(fittedSize(image.size(), maxSide), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

std::optional<QSize> JpegDecoder::size(const QByteArray& data)
{
    Handle handle(tjInitDecompress());
    int width = 0, height = 0, subsampling = 0, colorspace = 0;
    if (!handle || tjDecompressHeader3(handle.get(), bytes(data), static_cast<unsigned long>(data.size()), &width,
                                       &height, &subsampling, &colorspace) != 0)
        return std::nullopt;
    return QSize(width, height);
}

std::optional<QImage> JpegDecoder::decode(const QByteArray& data, int maxSide, QString* error, CutShort cutShort)
{
    const auto fail = [error](const QString& reason) -> std::optional<QImage> {
        if (error)
            *error = reason;
        return std::nullopt;
    };
    Handle handle(tjInitDecompress());
    if (!handle)
        return fail(QString::fromUtf8(tjGetErrorStr2(nullptr)));
    int width = 0, height = 0, subsampling = 0, colorspace = 0;
    const auto size = static_cast<unsigned long>(data.size());
    if (tjDecompressHeader3(handle.get(), bytes(data), size, &width, &height, &subsampling, &colorspace) != 0)
        return fail(QString::fromUtf8(tjGetErrorStr2(handle.get())));
    if (width <= 0 || height <= 0) // the first bytes of a file still being written
        return fail(QStringLiteral("Premature end of JPEG file"));
    const tjscalingfactor scale = chooseScale(width, height, maxSide);
    QImage image =
        HugePages::image(QSize(TJSCALED(width, scale), TJSCALED(height, scale)), QImage::Format_RGB32);
    if (image.isNull())
        return fail(QStringLiteral("out of memory for %1×%2").arg(width).arg(height));
    const int status = tjDecompress2(handle.get(), bytes(data), size, image.bits(), image.width(),
                                     int(image.bytesPerLine()), image.height(), TJPF_BGRX,
                                     TJFLAG_FASTDCT | TJFLAG_FASTUPSAMPLE);
    if (status != 0) {
        const QString reason = QString::fromUtf8(tjGetErrorStr2(handle.get()));
        if (tjGetErrorCode(handle.get()) == TJERR_FATAL)
            return fail(reason);
        // A copy cut short decodes with grey padding and only a warning: not the whole picture.
        if (reason.contains(QLatin1String("Premature end"))) {
            if (cutShort == CutShort::refuse)
                return fail(reason);
            if (error)
                *error = reason;
        }
    }
    return fitWithin(image, maxSide);
}

} // namespace lumaro::platform
