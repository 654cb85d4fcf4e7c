// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/metadata/CaptureMetadata.h"

#include "platform/files/FileNameCodec.h"
#include "platform/metadata/Exiv2Setup.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

#include <cmath>
#include <initializer_list>

namespace lumaro::platform {

namespace {

template <typename Data, typename Key>
typename Data::const_iterator findFirst(const Data& data, std::initializer_list<const char*> keys)
{
    for (const char* key : keys) {
        try {
            const auto it = data.findKey(Key(key));
            if (it != data.end() && it->count() > 0)
                return it;
        } catch (const Exiv2::AnyError&) {
            // a key this exiv2 build does not know
        }
    }
    return data.end();
}

Exiv2::ExifData::const_iterator findExif(const Exiv2::ExifData& exif, std::initializer_list<const char*> keys)
{
    return findFirst<Exiv2::ExifData, Exiv2::ExifKey>(exif, keys);
}

QString text(const Exiv2::ExifData& exif, std::initializer_list<const char*> keys)
{
    const auto it = findExif(exif, keys);
    if (it == exif.end())
        return {};
    const QString value = QString::fromStdString(it->toString()).trimmed();
    // Blank strings and "0" placeholders say nothing.
    return value == QLatin1String("0") ? QString() : value;
}

std::optional<double> number(const Exiv2::ExifData& exif, std::initializer_list<const char*> keys)
{
    const auto it = findExif(exif, keys);
    if (it == exif.end())
        return std::nullopt;
    const float value = it->toFloat();
    if (!std::isfinite(value) || value <= 0)
        return std::nullopt;
    return double(value);
}

std::optional<qint64> counter(const Exiv2::ExifData& exif, std::initializer_list<const char*> keys)
{
    const auto it = findExif(exif, keys);
    if (it == exif.end())
        return std::nullopt;
    const long value = it->toLong();
    if (value <= 0)
        return std::nullopt;
    return qint64(value);
}

// "2024:05:01 10:11:12" and the sub-second digits "12" (a decimal fraction: 0.12 s).
std::optional<QDateTime> captureTime(const QString& stamp, const QString& subSeconds, bool* hasSubSeconds)
{
    const QDate date = QDate::fromString(stamp.left(10), QStringLiteral("yyyy:MM:dd"));
    const QTime time = QTime::fromString(stamp.mid(11, 8), QStringLiteral("HH:mm:ss"));
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    QDateTime result(date, time, Qt::UTC);
    QString digits;
    for (const QChar c : subSeconds) {
        if (!c.isDigit())
            break;
        digits += c;
    }
    *hasSubSeconds = !digits.isEmpty();
    if (*hasSubSeconds)
        result =
            result.addMSecs(qint64(std::lround(QString(QStringLiteral("0.") + digits).toDouble() * 1000.0)));
    return result;
}

QString lensOf(const Exiv2::ExifData& exif)
{
    const QString model = text(exif, {"Exif.Photo.LensModel", "Exif.Canon.LensModel"});
    if (!model.isEmpty())
        return model;
    const auto it = Exiv2::lensName(exif);
    if (it == exif.end())
        return {};
    // The maker notes keep a lens number; print() gives its name from exiv2's lens tables.
    const QString name = QString::fromStdString(it->print(&exif)).trimmed();
    return name == QLatin1String("n/a") || name.startsWith(QLatin1Char('(')) ? QString() : name;
}

void readExif(const Exiv2::ExifData& exif, CaptureMetadata& m)
{
    m.make = text(exif, {"Exif.Image.Make"});
    m.model = text(exif, {"Exif.Image.Model"});
    m.bodySerial =
        text(exif, {"Exif.Photo.BodySerialNumber", "Exif.Image.CameraSerialNumber", "Exif.Canon.SerialNumber",
                    "Exif.Nikon3.SerialNumber", "Exif.Fujifilm.SerialNumber", "Exif.OlympusEq.SerialNumber",
                    "Exif.Pentax.SerialNumber", "Exif.Panasonic.InternalSerialNumber"});
    m.lens = lensOf(exif);
    m.lensSerial = text(exif, {"Exif.Photo.LensSerialNumber", "Exif.OlympusEq.LensSerialNumber",
                               "Exif.Panasonic.LensSerialNumber", "Exif.Nikon3.LensSerialNumber"});

    const QString stamp =
        text(exif, {"Exif.Photo.DateTimeOriginal", "Exif.Image.DateTimeOriginal", "Exif.Image.DateTime"});
    const QString subSeconds = text(exif, {"Exif.Photo.SubSecTimeOriginal", "Exif.Photo.SubSecTime"});
    if (!stamp.isEmpty())
        m.captured = captureTime(stamp, subSeconds, &m.hasSubSeconds);

    if (const auto orientation = counter(exif, {"Exif.Image.Orientation"}); orientation && *orientation <= 8)
        m.orientation = int(*orientation);
    if (const auto width = counter(exif, {"Exif.Photo.PixelXDimension"}))
        m.width = int(*width);
    if (const auto height = counter(exif, {"Exif.Photo.PixelYDimension"}))
        m.height = int(*height);

    m.focalLength = number(exif, {"Exif.Photo.FocalLength", "Exif.Image.FocalLength"});
    if (const auto equivalent = counter(exif, {"Exif.Photo.FocalLengthIn35mmFilm"}))
        m.focalLength35mm = int(*equivalent);
    if (const auto iso = counter(exif, {"Exif.Photo.ISOSpeedRatings", "Exif.Photo.RecommendedExposureIndex",
                                        "Exif.Photo.StandardOutputSensitivity", "Exif.Image.ISOSpeedRatings",
                                        "Exif.Nikon3.ISOSpeed", "Exif.CanonSi.ISOSpeed"}))
        m.iso = int(*iso);
    m.fNumber = number(exif, {"Exif.Photo.FNumber", "Exif.Image.FNumber"});
    m.exposureSeconds = number(exif, {"Exif.Photo.ExposureTime", "Exif.Image.ExposureTime"});
    if (const auto bias = findExif(exif, {"Exif.Photo.ExposureBiasValue", "Exif.Image.ExposureBiasValue"});
        bias != exif.end() && std::isfinite(bias->toFloat()))
        m.exposureBias = double(bias->toFloat());
    if (const auto flash = findExif(exif, {"Exif.Photo.Flash", "Exif.Image.Flash"}); flash != exif.end())
        m.flashFired = (flash->toLong() & 1) != 0;

    m.shutterCount = counter(exif, {"Exif.Nikon3.ShutterCount", "Exif.Pentax.ShutterCount"});
    m.imageNumber =
        counter(exif, {"Exif.Image.ImageNumber", "Exif.Canon.FileNumber", "Exif.CanonFi.FileNumber",
                       "Exif.Nikon3.ShutterCount", "Exif.Pentax.ShutterCount", "Exif.Fujifilm.SequenceNumber",
                       "Exif.Sony2.SequenceNumber", "Exif.Sony1.SequenceNumber",
                       "Exif.Panasonic.SequenceNumber", "Exif.Pentax.FrameNumber"});
    if (const auto rating = findExif(exif, {"Exif.Image.Rating"}); rating != exif.end())
        m.rating = int(rating->toLong());
}

void readXmp(const Exiv2::XmpData& xmp, CaptureMetadata& m)
{
    const auto it = findFirst<Exiv2::XmpData, Exiv2::XmpKey>(xmp, {"Xmp.xmp.Rating"});
    if (it != xmp.end())
        m.rating = int(it->toLong());
}

} // namespace

CaptureMetadata CaptureMetadata::read(const QString& path)
{
    prepareExiv2();
    CaptureMetadata m;
    try {
        auto image = Exiv2::ImageFactory::open(FileNameCodec::encode(path).toStdString());
        if (!image.get()) {
            m.error = QStringLiteral("unknown image format");
            return m;
        }
        image->readMetadata();
        const Exiv2::ExifData& exif = image->exifData();
        const Exiv2::XmpData& xmp = image->xmpData();
        if (exif.empty() && xmp.empty()) {
            m.status = Status::noMetadata;
            m.error = QStringLiteral("no EXIF data");
        } else {
            m.status = Status::ok;
        }
        readExif(exif, m);
        readXmp(xmp, m);
        if (m.width <= 0 || m.height <= 0) {
            m.width = image->pixelWidth();
            m.height = image->pixelHeight();
        }
    } catch (const std::exception& error) {
        m = CaptureMetadata{};
        m.error = QString::fromUtf8(error.what());
    } catch (...) {
        m = CaptureMetadata{};
        m.error = QStringLiteral("unknown exception");
    }
    return m;
}

} // namespace lumaro::platform
