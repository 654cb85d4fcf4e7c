// SPDX-License-Identifier: GPL-3.0-or-later
// bench helper: exif_thumbnail_writer JPEG SIDE — gives a JPEG an EXIF thumbnail of long side SIDE, the way
// cameras do, so the thumbnail benchmark can compare the embedded-thumbnail route.
#include <QCoreApplication>
#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QImageReader>

#include <exiv2/exiv2.hpp>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: exif_thumbnail_writer JPEG SIDE\n");
        return 2;
    }
    const QString path = QString::fromLocal8Bit(argv[1]);
    const int side = QString::fromLocal8Bit(argv[2]).toInt();
    QImageReader reader(path);
    const QSize size = reader.size();
    if (!size.isValid() || side <= 0) {
        std::fprintf(stderr, "cannot read %s\n", argv[1]);
        return 1;
    }
    reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatio));
    QByteArray thumb;
    QBuffer buffer(&thumb);
    buffer.open(QIODevice::WriteOnly);
    reader.read().save(&buffer, "jpg", 80);
    try {
        auto image = Exiv2::ImageFactory::open(argv[1]);
        image->readMetadata();
        Exiv2::ExifThumb exifThumb(image->exifData());
        exifThumb.setJpegThumbnail(reinterpret_cast<const Exiv2::byte*>(thumb.constData()), long(thumb.size()));
        image->writeMetadata();
    } catch (const Exiv2::AnyError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
