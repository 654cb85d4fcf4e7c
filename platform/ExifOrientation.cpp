// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ExifOrientation.h"
#include "platform/metadata/Exiv2Setup.h"

#include "platform/FileReplacer.h"
#include "platform/files/FileNameCodec.h"
#include "platform/ForeignCall.h"
#include "platform/metadata/Exiv2Setup.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

#include <mutex>

namespace lumaro::platform {

namespace {

const char* const kOrientationKey = "Exif.Image.Orientation";

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

int orientationOf(const Exiv2::ExifData& exif)
{
    const auto it = exif.findKey(Exiv2::ExifKey(kOrientationKey));
    if (it == exif.end() || it->count() == 0)
        return 1;
    const long value = it->toLong();
    return value >= 1 && value <= 8 ? int(value) : 1;
}

} // namespace

int ExifOrientation::read(const QString& path, QString* error)
{
    prepareExiv2();
    return guardedForeignCall(
        [&] {
            auto image = Exiv2::ImageFactory::open(FileNameCodec::encode(path).toStdString());
            image->readMetadata();
            return orientationOf(image->exifData());
        },
        [&](const QString& reason) {
            setError(error, reason);
            return 0;
        });
}

bool ExifOrientation::turnJpeg(const QString& path, int (*turn)(int), QString* error)
{
    prepareExiv2();
    bool read = false;
    const QByteArray original = FileNameCodec::readAll(path, &read);
    if (!read) {
        setError(error, QStringLiteral("cannot read ") + path);
        return false;
    }
    QByteArray edited;
    const bool editedInMemory = guardedForeignCall(
        [&] {
            // Edited in memory, so the file on disk is replaced in one rename and never seen half-written.
            auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(original.constData()),
                                                   long(original.size()));
            if (image->imageType() != Exiv2::ImageType::jpeg) {
                setError(error, QStringLiteral("not a JPEG file"));
                return false;
            }
            image->readMetadata();
            Exiv2::ExifData& exif = image->exifData();
            exif[kOrientationKey] = uint16_t(turn(orientationOf(exif)));
            image->writeMetadata();
            Exiv2::BasicIo& io = image->io();
            io.seek(0, Exiv2::BasicIo::beg);
            const Exiv2::DataBuf buffer = io.read(long(io.size()));
            edited = QByteArray(reinterpret_cast<const char*>(buffer.pData_), qsizetype(buffer.size_));
            return true;
        },
        [&](const QString& reason) {
            setError(error, reason);
            return false;
        });
    return editedInMemory && FileReplacer::replaceContents(path, edited, error);
}

} // namespace lumaro::platform
