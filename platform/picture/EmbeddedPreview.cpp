// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/picture/EmbeddedPreview.h"

#include "platform/ForeignCall.h"
#include "platform/files/FileNameCodec.h"
#include "platform/metadata/Exiv2Setup.h"
#include "platform/picture/ImageOrientation.h"

#include <exiv2/exiv2.hpp>
#include <libraw/libraw.h>

#include <memory>
#include <mutex>

namespace lumaro::platform {

namespace {

// exiv2 0.27 is not reliably thread-safe (shared tables, its log handler); its calls here are short (a header
// parse), so they take turns rather than risk a crash in a pool thread.
std::mutex& exiv2Mutex()
{
    static std::mutex mutex;
    return mutex;
}

int orientationOf(const Exiv2::ExifData& exif)
{
    const auto it = exif.findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    if (it == exif.end() || it->count() == 0)
        return 1;
    const long value = it->toLong();
    return value >= 1 && value <= 8 ? int(value) : 1;
}

std::optional<RawPreview> failedPreview(QString* error, const QString& reason)
{
    if (error)
        *error = reason;
    return std::nullopt;
}

std::optional<RawPreview> librawPreviewOf(const QString& path, QString* error)
{
    auto raw = std::make_unique<LibRaw>();
    const QByteArray name = FileNameCodec::encode(path);
    int status = raw->open_file(name.constData());
    if (status == LIBRAW_SUCCESS)
        status = raw->unpack_thumb();
    if (status != LIBRAW_SUCCESS) {
        if (error)
            *error = QString::fromUtf8(libraw_strerror(status));
        return std::nullopt;
    }
    int makeError = 0;
    libraw_processed_image_t* thumb = raw->dcraw_make_mem_thumb(&makeError);
    if (!thumb) {
        if (error)
            *error = QString::fromUtf8(libraw_strerror(makeError));
        return std::nullopt;
    }
    RawPreview preview;
    preview.orientation = orientationFromRawFlip(raw->imgdata.sizes.flip);
    if (thumb->type == LIBRAW_IMAGE_JPEG) {
        preview.jpeg = QByteArray(reinterpret_cast<const char*>(thumb->data), qsizetype(thumb->data_size));
    } else if (thumb->type == LIBRAW_IMAGE_BITMAP && thumb->colors == 3 && thumb->bits == 8) {
        preview.bitmap = QImage(thumb->data, thumb->width, thumb->height, thumb->width * 3, QImage::Format_RGB888)
                             .copy();
    }
    LibRaw::dcraw_clear_mem(thumb);
    if (preview.jpeg.isEmpty() && preview.bitmap.isNull()) {
        if (error)
            *error = QStringLiteral("no usable embedded preview");
        return std::nullopt;
    }
    return preview;
}

std::optional<RawPreview> librawPreview(const QString& path, QString* error)
{
    return guardedForeignCall([&] { return librawPreviewOf(path, error); },
                              [&](const QString& reason) { return failedPreview(error, reason); });
}

std::optional<RawPreview> exiv2Preview(const QString& path, QString* error)
{
    prepareExiv2();
    const std::lock_guard lock(exiv2Mutex());
    return guardedForeignCall(
        [&]() -> std::optional<RawPreview> {
            auto image = Exiv2::ImageFactory::open(FileNameCodec::encode(path).toStdString());
            image->readMetadata();
            Exiv2::PreviewManager manager(*image);
            const Exiv2::PreviewPropertiesList list = manager.getPreviewProperties();
            if (list.empty())
                return failedPreview(error, QStringLiteral("no embedded preview"));
            const Exiv2::PreviewImage largest = manager.getPreviewImage(list.back()); // sorted by size
            RawPreview preview;
            preview.orientation = orientationOf(image->exifData());
            preview.jpeg =
                QByteArray(reinterpret_cast<const char*>(largest.pData()), qsizetype(largest.size()));
            return preview;
        },
        [&](const QString& reason) { return failedPreview(error, reason); });
}

} // namespace

ExifSummary EmbeddedPreview::exifOf(const QByteArray& data)
{
    prepareExiv2();
    const std::lock_guard lock(exiv2Mutex());
    return guardedForeignCall(
        [&] {
            ExifSummary summary;
            auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(data.constData()),
                                                   long(data.size()));
            image->readMetadata();
            const Exiv2::ExifData& exif = image->exifData();
            summary.readable = true;
            summary.orientation = orientationOf(exif);
            Exiv2::ExifThumbC thumb(exif);
            const Exiv2::DataBuf buffer = thumb.copy();
            if (buffer.size_ > 0 && std::string(thumb.mimeType()) == "image/jpeg")
                summary.thumbnail =
                    QByteArray(reinterpret_cast<const char*>(buffer.pData_), qsizetype(buffer.size_));
            return summary;
        },
        [](const QString&) { return ExifSummary{}; });
}

std::optional<RawPreview> EmbeddedPreview::rawPreview(const QString& path, QString* error)
{
    QString librawError;
    if (auto preview = librawPreview(path, &librawError))
        return preview;
    QString exivError;
    if (auto preview = exiv2Preview(path, &exivError))
        return preview;
    if (error)
        *error = librawError + QStringLiteral("; ") + exivError;
    return std::nullopt;
}

} // namespace lumaro::platform
