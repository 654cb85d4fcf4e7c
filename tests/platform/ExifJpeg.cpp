// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/platform/ExifJpeg.h"

#include <exiv2/exiv2.hpp>

namespace lumaro::testing {

QByteArray withExif(const QByteArray& jpeg, int orientation, const QByteArray& thumbnail)
{
    auto image =
        Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(jpeg.constData()), long(jpeg.size()));
    image->readMetadata();
    Exiv2::ExifData& exif = image->exifData();
    exif["Exif.Image.Orientation"] = uint16_t(orientation);
    if (!thumbnail.isEmpty())
        Exiv2::ExifThumb(exif).setJpegThumbnail(reinterpret_cast<const Exiv2::byte*>(thumbnail.constData()),
                                                long(thumbnail.size()));
    image->writeMetadata();
    Exiv2::BasicIo& io = image->io();
    io.seek(0, Exiv2::BasicIo::beg);
    const Exiv2::DataBuf all = io.read(long(io.size()));
    return QByteArray(reinterpret_cast<const char*>(all.pData_), qsizetype(all.size_));
}

bool isNear(QColor a, QColor b)
{
    return std::abs(a.red() - b.red()) < 40 && std::abs(a.green() - b.green()) < 40 &&
           std::abs(a.blue() - b.blue()) < 40;
}

} // namespace lumaro::testing
