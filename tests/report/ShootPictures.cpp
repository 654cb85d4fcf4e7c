// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/report/ShootPictures.h"

#include <QFile>

#include <exiv2/exiv2.hpp>

namespace lumaro::testing {

QString writeShot(TempFolder& folder, const QString& relative, const ExifTags& tags, QSize size)
{
    const bool jpeg = relative.endsWith(QLatin1String(".jpg"), Qt::CaseInsensitive);
    const QString made = folder.writePicture(relative + (jpeg ? QString() : QStringLiteral(".tif")), size);
    const QString path = folder.filePath(relative);
    if (!jpeg)
        QFile::rename(made, path);
    auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
    image->readMetadata();
    Exiv2::ExifData& exif = image->exifData();
    Exiv2::XmpData& xmp = image->xmpData();
    for (auto it = tags.begin(); it != tags.end(); ++it) {
        if (it.key().startsWith(QLatin1String("Xmp.")))
            xmp[it.key().toStdString()] = it.value().toStdString();
        else
            exif[it.key().toStdString()] = it.value().toStdString();
    }
    image->writeMetadata();
    return path;
}

ExifTags cameraShot(const QString& time, const QString& subSeconds, int imageNumber)
{
    ExifTags tags{{QStringLiteral("Exif.Image.Make"), QStringLiteral("Canon")},
                  {QStringLiteral("Exif.Image.Model"), QStringLiteral("Canon EOS R5")},
                  {QStringLiteral("Exif.Photo.BodySerialNumber"), QStringLiteral("012345")},
                  {QStringLiteral("Exif.Photo.DateTimeOriginal"), time}};
    if (!subSeconds.isEmpty())
        tags.insert(QStringLiteral("Exif.Photo.SubSecTimeOriginal"), subSeconds);
    if (imageNumber > 0)
        tags.insert(QStringLiteral("Exif.Image.ImageNumber"), QString::number(imageNumber));
    return tags;
}

} // namespace lumaro::testing
