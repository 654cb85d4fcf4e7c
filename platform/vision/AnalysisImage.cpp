// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/AnalysisImage.h"

#include <QFile>
#include <QImageReader>

namespace lumaro::platform {

namespace {

// A JPEG cut short still decodes (the decoder pads it with grey), so look for the end-of-image marker.
bool jpegEndsProperly(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const qint64 size = file.size();
    const qint64 tail = std::min<qint64>(size, 4096);
    file.seek(size - tail);
    const QByteArray bytes = file.read(tail);
    return bytes.contains(QByteArrayLiteral("\xFF\xD9"));
}

} // namespace

std::optional<AnalysisImage> AnalysisImageReader::read(const QString& path, int maxSide, QString* error)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize stored = reader.size();
    if (!stored.isValid()) {
        if (error)
            *error = reader.errorString();
        return std::nullopt;
    }
    const bool swapsAxes = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize upright = swapsAxes ? stored.transposed() : stored;
    if (std::max(stored.width(), stored.height()) > maxSide)
        reader.setScaledSize(stored.scaled(maxSide, maxSide, Qt::KeepAspectRatio));
    const QByteArray format = reader.format();
    QImage image = reader.read();
    if (image.isNull()) {
        if (error)
            *error = reader.errorString();
        return std::nullopt;
    }
    if ((format == "jpeg" || format == "jpg") && !jpegEndsProperly(path)) {
        if (error)
            *error = QStringLiteral("JPEG 数据不完整");
        return std::nullopt;
    }
    return AnalysisImage{std::move(image), upright};
}

} // namespace lumaro::platform
