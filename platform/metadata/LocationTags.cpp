// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/metadata/LocationTags.h"

#include "platform/files/FileNameCodec.h"
#include "platform/metadata/Exiv2Setup.h"

#include <exiv2/exiv2.hpp>

namespace lumaro::platform {

namespace {

bool isLocationKey(const std::string& key)
{
    return key.rfind("Exif.GPSInfo.", 0) == 0 || key.rfind("Xmp.exif.GPS", 0) == 0;
}

Exiv2::Image::AutoPtr opened(const QString& path)
{
    auto image = Exiv2::ImageFactory::open(FileNameCodec::encode(path).toStdString());
    image->readMetadata();
    return image;
}

template <typename Data> bool eraseLocation(Data& data)
{
    bool erased = false;
    for (auto it = data.begin(); it != data.end();) {
        if (isLocationKey(it->key())) {
            it = data.erase(it);
            erased = true;
        } else {
            ++it;
        }
    }
    return erased;
}

bool failed(QString* error, const std::exception& reason)
{
    if (error)
        *error = QString::fromLocal8Bit(reason.what());
    return false;
}

} // namespace

bool LocationTags::strip(const QString& path, QString* error)
{
    prepareExiv2();
    try {
        auto image = opened(path);
        const bool exif = eraseLocation(image->exifData());
        const bool xmp = eraseLocation(image->xmpData());
        if (exif || xmp)
            image->writeMetadata();
        return true;
    } catch (const std::exception& reason) {
        return failed(error, reason);
    }
}

bool LocationTags::copy(const QString& source, const QString& target, QString* error)
{
    prepareExiv2();
    try {
        auto from = opened(source);
        auto to = opened(target);
        bool any = false;
        for (const Exiv2::Exifdatum& datum : from->exifData()) {
            if (isLocationKey(datum.key())) {
                to->exifData().add(datum);
                any = true;
            }
        }
        if (any)
            to->writeMetadata();
        return true;
    } catch (const std::exception& reason) {
        return failed(error, reason);
    }
}

bool LocationTags::has(const QString& path)
{
    prepareExiv2();
    try {
        auto image = opened(path);
        for (const Exiv2::Exifdatum& datum : image->exifData())
            if (isLocationKey(datum.key()))
                return true;
        for (const Exiv2::Xmpdatum& datum : image->xmpData())
            if (isLocationKey(datum.key()))
                return true;
    } catch (const std::exception&) {
    }
    return false;
}

} // namespace lumaro::platform
