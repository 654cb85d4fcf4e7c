// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ImageRotator.h"

#include "platform/files/FileNameCodec.h"

#include "platform/ExifOrientation.h"
#include "platform/FileReplacer.h"
#include "platform/TiffOrientationPatch.h"
#include "platform/picture/PictureSignature.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QTransform>

#include <cerrno>
#include <cstring>

namespace lumaro::platform {

namespace {

const QStringList kPixelFormats{QStringLiteral("png"), QStringLiteral("tif"), QStringLiteral("tiff"),
                                QStringLiteral("bmp"), QStringLiteral("webp")};
const QStringList kDisplayOnly{QStringLiteral("gif"), QStringLiteral("heic"), QStringLiteral("heif"),
                               QStringLiteral("hif"), QStringLiteral("cr3"),  QStringLiteral("nef"),
                               QStringLiteral("nrw"), QStringLiteral("arw"),  QStringLiteral("sr2"),
                               QStringLiteral("srf"), QStringLiteral("dng"),  QStringLiteral("raf"),
                               QStringLiteral("orf"), QStringLiteral("rw2"),  QStringLiteral("pef"),
                               QStringLiteral("srw"), QStringLiteral("raw"),  QStringLiteral("rwl"),
                               QStringLiteral("3fr"), QStringLiteral("iiq"),  QStringLiteral("x3f")};

RotationOutcome outcome(RotationOutcome::Status status, RotationOutcome::Method method = RotationOutcome::Method::none,
                        QString error = {})
{
    RotationOutcome result;
    result.status = status;
    result.method = method;
    result.error = std::move(error);
    return result;
}

RotationOutcome permissionDenied(const QString& path)
{
    RotationOutcome result = outcome(RotationOutcome::Status::failed, RotationOutcome::Method::none,
                                     QStringLiteral("没有写入权限: ") + path);
    result.permissionDenied = true;
    return result;
}

QByteArray qtFormatOf(PictureKind kind)
{
    switch (kind) {
    case PictureKind::png:
        return "png";
    case PictureKind::tiff:
        return "tiff";
    case PictureKind::webp:
        return "webp";
    case PictureKind::bmp:
        return "bmp";
    default:
        return {};
    }
}

// Decoded, turned and encoded again in the format the bytes are in, whatever the name says.
RotationOutcome rotatePixels(const QString& path, PictureKind kind)
{
    const QByteArray format = qtFormatOf(kind);
    if (format.isEmpty())
        return outcome(RotationOutcome::Status::failed, RotationOutcome::Method::pixels,
                       QStringLiteral("its content is not a picture that can be rewritten"));
    QFile file;
    if (!FileNameCodec::openForReading(file, path))
        return outcome(RotationOutcome::Status::failed, RotationOutcome::Method::pixels,
                       QString::fromLocal8Bit(std::strerror(errno)));
    QImageReader reader(&file, format);
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(true);
    QImage image = reader.read();
    if (image.isNull())
        return outcome(RotationOutcome::Status::failed, RotationOutcome::Method::pixels, reader.errorString());
    image = image.transformed(QTransform().rotate(-90));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    if (format == "webp")
        writer.setQuality(100);
    if (!writer.write(image))
        return outcome(RotationOutcome::Status::failed, RotationOutcome::Method::pixels, writer.errorString());
    QString error;
    if (!FileReplacer::replaceContents(path, bytes, &error))
        return outcome(RotationOutcome::Status::failed, RotationOutcome::Method::pixels, error);
    return outcome(RotationOutcome::Status::rotated, RotationOutcome::Method::pixels);
}

} // namespace

int ImageRotator::orientationAfterLeftTurn(int orientation)
{
    // Upright orientations turn 1 → 8 → 3 → 6 → 1; the mirrored ones 2 → 5 → 4 → 7 → 2.
    switch (orientation) {
    case 2: return 5;
    case 3: return 6;
    case 4: return 7;
    case 5: return 4;
    case 6: return 1;
    case 7: return 2;
    case 8: return 3;
    default: return 8;
    }
}

RotationOutcome ImageRotator::rotateLeft(const QString& path)
{
    const QFileInfo info(path);
    const QString suffix = info.suffix().toLower();
    if (!FileNameCodec::isFile(path))
        return outcome(RotationOutcome::Status::failed, RotationOutcome::Method::none,
                       QStringLiteral("文件不存在: ") + path);
    // The bytes decide how a picture is turned: a JPEG renamed .png still turns losslessly, and a PNG named
    // .jpg is not handed to the EXIF editor.
    const PictureKind kind = PictureSignature::kindOfFile(path);
    const bool isJpeg = kind == PictureKind::jpeg;
    const bool isCr2 =
        kind == PictureKind::cr2 || (suffix == QStringLiteral("cr2") && kind == PictureKind::tiff);
    const bool pictureName = kPixelFormats.contains(suffix) || kDisplayOnly.contains(suffix) ||
                             suffix == QStringLiteral("jpg") || suffix == QStringLiteral("jpeg") ||
                             suffix == QStringLiteral("cr2");
    if (!pictureName && kind == PictureKind::unknown)
        return outcome(RotationOutcome::Status::unsupportedFormat);
    if (!isJpeg && !isCr2 &&
        (kDisplayOnly.contains(suffix) || kind == PictureKind::gif || kind == PictureKind::heif))
        return outcome(RotationOutcome::Status::needsDisplayRotation);
    if (!isJpeg && !isCr2) {
        // Rewriting keeps one frame: a multi-page TIFF, an animated PNG or WebP is turned on screen instead.
        const int frames = PictureSignature::frameCount(path, kind);
        if (frames > 1)
            return outcome(RotationOutcome::Status::needsDisplayRotation, RotationOutcome::Method::none,
                           QStringLiteral("%1 frames; rewriting would keep only the first").arg(frames));
    }
    if (!FileNameCodec::isWritable(path) || (!isCr2 && !FileNameCodec::isWritable(info.absolutePath())))
        return permissionDenied(path);

    if (isCr2) {
        QString error;
        if (!TiffOrientationPatch::apply(path, &orientationAfterLeftTurn, &error))
            return outcome(RotationOutcome::Status::failed, RotationOutcome::Method::cr2Orientation, error);
        return outcome(RotationOutcome::Status::rotated, RotationOutcome::Method::cr2Orientation);
    }
    if (isJpeg) {
        QString error;
        if (!ExifOrientation::turnJpeg(path, &orientationAfterLeftTurn, &error))
            return outcome(RotationOutcome::Status::failed, RotationOutcome::Method::exifOrientation, error);
        return outcome(RotationOutcome::Status::rotated, RotationOutcome::Method::exifOrientation);
    }
    return rotatePixels(path, kind);
}

} // namespace lumaro::platform
