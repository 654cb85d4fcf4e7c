// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ImageMetadata.h"

#include "platform/files/FileNameCodec.h"
#include "platform/metadata/Exiv2Setup.h"

#include <exiv2/exiv2.hpp>

#include <mutex>

namespace lumaro::platform {

namespace {

QString tagText(const Exiv2::ExifData& exif, const char* key)
{
    try {
        const auto it = exif.findKey(Exiv2::ExifKey(key));
        if (it == exif.end())
            return {};
        return QString::fromStdString(it->toString()).trimmed();
    } catch (const std::exception&) {
        return {}; // a maker-note key this exiv2 does not know, or a value it cannot print
    }
}

} // namespace

ImageMetadata ImageMetadata::read(const QString& path)
{
    prepareExiv2();
    ImageMetadata result;
    try {
        auto image = Exiv2::ImageFactory::open(FileNameCodec::encode(path).toStdString());
        if (!image.get()) {
            result.error = QStringLiteral("unknown image format");
            return result;
        }
        image->readMetadata();
        const Exiv2::ExifData& exif = image->exifData();
        if (exif.empty()) {
            result.status = Status::noProperties;
            result.error = QStringLiteral("no EXIF data");
            return result;
        }
        result.status = Status::ok;
        result.make = tagText(exif, "Exif.Image.Make");
        result.model = tagText(exif, "Exif.Image.Model");
        for (const char* key : {"Exif.Photo.BodySerialNumber", "Exif.Image.CameraSerialNumber",
                                "Exif.Canon.SerialNumber", "Exif.Nikon3.SerialNumber"}) {
            result.serial = tagText(exif, key);
            if (!result.serial.isEmpty())
                break;
        }
        result.captureTime = tagText(exif, "Exif.Photo.DateTimeOriginal");
    } catch (const Exiv2::AnyError& error) {
        result.status = Status::cannotOpen;
        result.error = QString::fromUtf8(error.what());
    } catch (const std::exception& error) {
        result.status = Status::cannotOpen;
        result.error = QString::fromUtf8(error.what());
    } catch (...) {
        result.status = Status::cannotOpen;
        result.error = QStringLiteral("unknown exception");
    }
    return result;
}

} // namespace lumaro::platform
