// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/AnalysisImage.h"

#include "platform/files/FileNameCodec.h"
#include "platform/picture/FittedSize.h"

#include <QFile>
#include <QImageReader>

#include <cerrno>
#include <cstring>

namespace lumaro::platform {

namespace {

// A JPEG cut short still decodes (the decoder pads it with grey), so look for the end-of-image marker.
bool jpegEndsProperly(QFile& file)
{
    const qint64 size = file.size();
    const qint64 tail = std::min<qint64>(size, 4096);
    file.seek(size - tail);
    const QByteArray bytes = file.read(tail);
    return bytes.contains(QByteArrayLiteral("\xFF\xD9"));
}

// The decoder scales by 1/2, 1/4 or 1/8 almost for free while decoding; any other size costs a second,
// full resampling pass. So a JPEG is asked for the smallest of those fractions that is still nearly as large
// as wanted (a 6000×4000 photo comes out at 1500×1000 in one pass).
QSize jpegScaledSize(QSize stored, int maxSide)
{
    const int longSide = std::max(stored.width(), stored.height());
    for (int denominator : {8, 4, 2}) {
        if (longSide / denominator >= maxSide * 9 / 10)
            return QSize((stored.width() + denominator - 1) / denominator,
                         (stored.height() + denominator - 1) / denominator);
    }
    return fittedSize(stored, maxSide);
}

} // namespace

std::optional<AnalysisImage> AnalysisImageReader::read(const QString& path, int maxSide, QString* error)
{
    QFile file;
    if (!FileNameCodec::openForReading(file, path)) {
        if (error)
            *error = QStringLiteral("cannot open ") + path + QStringLiteral(": ") +
                     QString::fromLocal8Bit(std::strerror(errno));
        return std::nullopt;
    }
    QImageReader reader(&file);
    reader.setAutoTransform(true);
    const QSize stored = reader.size();
    if (!stored.isValid()) {
        if (error)
            *error = reader.errorString();
        return std::nullopt;
    }
    const bool swapsAxes = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize upright = swapsAxes ? stored.transposed() : stored;
    const QByteArray format = reader.format();
    const bool isJpeg = format == "jpeg" || format == "jpg";
    const int longSide = std::max(stored.width(), stored.height());
    if (longSide > maxSide)
        reader.setScaledSize(isJpeg ? jpegScaledSize(stored, maxSide) : fittedSize(stored, maxSide));
    QImage image = reader.read();
    if (image.isNull()) {
        if (error)
            *error = reader.errorString();
        return std::nullopt;
    }
    if (isJpeg && !jpegEndsProperly(file)) {
        if (error)
            *error = QStringLiteral("JPEG 数据不完整");
        return std::nullopt;
    }
    return AnalysisImage{std::move(image), upright};
}

} // namespace lumaro::platform
