// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/picture/PictureReader.h"

#include "platform/files/FileNameCodec.h"

#include "platform/picture/CameraPreview.h"
#include "platform/picture/EmbeddedPreview.h"
#include "platform/picture/FittedSize.h"
#include "platform/picture/HeifDecoder.h"
#include "platform/picture/HugePages.h"
#include "platform/picture/ImageOrientation.h"
#include "platform/picture/JpegDecoder.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QSet>

#include <cstring>

namespace lumaro::platform {

namespace {

// Enough for the markers before the first scan, where the EXIF block (at most 64 KiB) lives.
constexpr qint64 headBytes = 128 * 1024;

enum class Family { jpeg, raw, heif, other };

Family familyOf(const QString& path)
{
    static const QSet<QString> raws{
        QStringLiteral("cr2"), QStringLiteral("cr3"), QStringLiteral("crw"), QStringLiteral("nef"),
        QStringLiteral("nrw"), QStringLiteral("arw"), QStringLiteral("srf"), QStringLiteral("sr2"),
        QStringLiteral("dng"), QStringLiteral("raf"), QStringLiteral("orf"), QStringLiteral("rw2"),
        QStringLiteral("pef"), QStringLiteral("srw"), QStringLiteral("x3f"), QStringLiteral("3fr"),
        QStringLiteral("iiq"), QStringLiteral("rwl")};
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg") || suffix == QLatin1String("jpe"))
        return Family::jpeg;
    if (suffix == QLatin1String("heic") || suffix == QLatin1String("heif") || suffix == QLatin1String("hif"))
        return Family::heif;
    return raws.contains(suffix) ? Family::raw : Family::other;
}

DecodedPicture failed(const QString& error)
{
    return DecodedPicture{QImage(), DecodeRoute::none, error};
}

DecodedPicture readWithQt(const PictureRequest& request, QIODevice* device = nullptr)
{
    QImageReader reader;
    QFile file;
    if (device)
        reader.setDevice(device);
    else if (FileNameCodec::openForReading(file, request.path))
        reader.setDevice(&file);
    else
        return failed(QStringLiteral("cannot open ") + request.path);
    reader.setAutoTransform(true);
    const QSize stored = reader.size();
    if (request.maxSide > 0 && stored.isValid() && std::max(stored.width(), stored.height()) > request.maxSide)
        reader.setScaledSize(fittedSize(stored, request.maxSide));
    QImage image = reader.read();
    if (image.isNull())
        return failed(reader.errorString());
    return DecodedPicture{fitWithin(image, request.maxSide), DecodeRoute::qt, {}};
}

std::optional<QImage> embeddedThumbnail(const ExifSummary& exif, int maxSide)
{
    if (exif.thumbnail.isEmpty() || maxSide <= 0)
        return std::nullopt;
    const auto size = JpegDecoder::size(exif.thumbnail);
    if (!size || std::max(size->width(), size->height()) < maxSide)
        return std::nullopt;
    return JpegDecoder::decode(exif.thumbnail, maxSide);
}

// A JPEG that could not be read whole (a copy cut short, a card pulled too early): its own EXIF thumbnail at any
// size, else the rows that are there. The image comes with the reason, so a view can say it is not all.
DecodedPicture readCutShortJpeg(const QByteArray& data, const ExifSummary& exif, int maxSide, const QString& error)
{
    if (!exif.thumbnail.isEmpty()) {
        if (auto thumb = JpegDecoder::decode(exif.thumbnail, maxSide))
            return DecodedPicture{applyExifOrientation(*thumb, exif.orientation), DecodeRoute::exifThumbnail, error};
    }
    QString partError;
    if (auto part = JpegDecoder::decode(data, maxSide, &partError, JpegDecoder::CutShort::keepWhatIsThere))
        return DecodedPicture{applyExifOrientation(*part, exif.orientation), DecodeRoute::jpegScaled, error};
    return failed(error);
}

// The rest of the file read straight behind its head into one block of huge pages (see HugePages): no growth,
// no second copy. The block must outlive the bytes returned.
QByteArray wholeFile(QFile& file, const QByteArray& head, HugePages::Block& memory)
{
    const qint64 size = std::max(file.size(), qint64(head.size()));
    memory = HugePages::block(size);
    if (!memory)
        return head + file.readAll();
    std::memcpy(memory.get(), head.constData(), size_t(head.size()));
    qint64 filled = head.size();
    while (filled < size) {
        const qint64 got = file.read(memory.get() + filled, size - filled);
        if (got <= 0)
            break;
        filled += got;
    }
    const QByteArray grown = file.readAll(); // still being written: what came since it was measured
    if (!grown.isEmpty())
        return QByteArray(memory.get(), filled) + grown;
    return QByteArray::fromRawData(memory.get(), filled);
}

DecodedPicture readJpeg(const PictureRequest& request)
{
    QFile file;
    if (!FileNameCodec::openForReading(file, request.path))
        return failed(QStringLiteral("cannot open ") + request.path);
    QByteArray data = file.read(headBytes);
    ExifSummary exif = EmbeddedPreview::exifOf(data);
    if (request.allowEmbedded) {
        if (auto thumb = embeddedThumbnail(exif, request.maxSide))
            return DecodedPicture{applyExifOrientation(*thumb, exif.orientation), DecodeRoute::exifThumbnail, {}};
        if (auto preview = CameraPreview::decode(file, data, request.maxSide))
            return DecodedPicture{
                applyExifOrientation(*preview, exif.orientation), DecodeRoute::cameraPreview, {}};
        file.seek(data.size());
    }
    HugePages::Block memory;
    data = wholeFile(file, data, memory);
    if (!exif.readable)
        exif = EmbeddedPreview::exifOf(data);
    QString error;
    if (auto image = JpegDecoder::decode(data, request.maxSide, &error))
        return DecodedPicture{applyExifOrientation(*image, exif.orientation), DecodeRoute::jpegScaled, {}};
    if (data.startsWith("\xFF\xD8"))
        return readCutShortJpeg(data, exif, request.maxSide, error);
    QBuffer buffer(&data); // not a JPEG after all: let Qt find out what it is
    buffer.open(QIODevice::ReadOnly);
    DecodedPicture other = readWithQt(request, &buffer);
    return other.isNull() ? failed(error) : other;
}

DecodedPicture readRaw(const PictureRequest& request)
{
    QString error;
    const auto preview = EmbeddedPreview::rawPreview(request.path, &error);
    if (!preview)
        return failed(error);
    QImage image = preview->bitmap;
    int orientation = preview->orientation;
    if (!preview->jpeg.isEmpty()) {
        const auto decoded = JpegDecoder::decode(preview->jpeg, request.maxSide, &error);
        if (!decoded)
            return failed(error);
        image = *decoded;
        const ExifSummary own = EmbeddedPreview::exifOf(preview->jpeg.left(headBytes));
        if (orientation == 1 && own.orientation != 1)
            orientation = own.orientation;
    }
    return DecodedPicture{applyExifOrientation(fitWithin(image, request.maxSide), orientation),
                          DecodeRoute::rawPreview, {}};
}

DecodedPicture readHeif(const PictureRequest& request)
{
    bool usedThumbnail = false;
    QString error;
    auto image = HeifDecoder::decode(request.path, request.maxSide, request.allowEmbedded, &usedThumbnail, &error);
    if (!image)
        return failed(error);
    return DecodedPicture{*image, usedThumbnail ? DecodeRoute::heifThumbnail : DecodeRoute::heif, {}};
}

} // namespace

DecodedPicture PictureReader::read(const PictureRequest& request)
{
    DecodedPicture picture;
    switch (familyOf(request.path)) {
    case Family::jpeg: picture = readJpeg(request); break;
    case Family::raw: picture = readRaw(request); break;
    case Family::heif: picture = readHeif(request); break;
    case Family::other: picture = readWithQt(request); break;
    }
    if (picture.error.isEmpty() && picture.isNull())
        picture.error = QStringLiteral("no image");
    if (!picture.isNull() && request.extraRotation % 360 != 0)
        picture.image = rotateClockwise(picture.image, request.extraRotation);
    return picture;
}

QString PictureReader::routeName(DecodeRoute route)
{
    switch (route) {
    case DecodeRoute::none: return QStringLiteral("none");
    case DecodeRoute::exifThumbnail: return QStringLiteral("exif-thumbnail");
    case DecodeRoute::cameraPreview:
        return QStringLiteral("camera-preview");
    case DecodeRoute::jpegScaled: return QStringLiteral("jpeg-dct-scaled");
    case DecodeRoute::rawPreview: return QStringLiteral("raw-preview");
    case DecodeRoute::heifThumbnail: return QStringLiteral("heif-thumbnail");
    case DecodeRoute::heif: return QStringLiteral("heif");
    case DecodeRoute::qt: return QStringLiteral("qt");
    }
    return {};
}

} // namespace lumaro::platform
