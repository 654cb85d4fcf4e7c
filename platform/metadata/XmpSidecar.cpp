// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/metadata/XmpSidecar.h"

#include "platform/DirectoryLister.h"
#include "platform/FileCopier.h"
#include "platform/FileReplacer.h"
#include "platform/ForeignCall.h"
#include "platform/files/FileNameCodec.h"
#include "platform/metadata/Exiv2Setup.h"
#include "platform/metadata/XmpMarkProperties.h"
#include "platform/metadata/XmpSidecarText.h"

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <functional>

namespace lumaro::platform {

namespace {

namespace Properties = XmpMarkProperties;

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

QStringList qtList(const std::vector<std::string>& names)
{
    QStringList list;
    for (const std::string& name : names)
        list << QString::fromStdString(name);
    return list;
}

PictureMarks marksOf(const Exiv2::XmpData& xmp, std::optional<long> exifRating)
{
    PictureMarks marks;
    const auto rating = Properties::number(xmp, Properties::rating) ? Properties::number(xmp, Properties::rating)
                                                                    : exifRating;
    if (rating && *rating < 0)
        marks.flag = PickFlag::rejected;
    else if (rating)
        marks.stars = int(std::clamp(*rating, 0L, 5L));
    const auto pick = Properties::number(xmp, Properties::pickLabel);
    if (pick == 1) {
        marks.flag = PickFlag::rejected;
        marks.stars = 0;
    } else if (pick == 3 && marks.flag == PickFlag::none) {
        marks.flag = PickFlag::picked;
    }
    marks.colours = qtList(Properties::colours(xmp));
    return marks;
}

std::optional<QByteArray> readSidecar(const QString& path, Exiv2::XmpData& xmp, QString* error)
{
    bool ok = false;
    const QByteArray bytes = FileNameCodec::readAll(path, &ok, 16 * 1024 * 1024);
    if (!ok) {
        setError(error, QStringLiteral("%1: cannot be read").arg(path));
        return std::nullopt;
    }
    if (!XmpSidecarText::decode(std::string_view(bytes.constData(), bytes.size()), xmp)) {
        setError(error, QStringLiteral("%1: not valid XMP").arg(path));
        return std::nullopt;
    }
    return bytes;
}

// Reads the sidecar (or starts a new one), lets `change` edit it, and writes it back safely.
bool editSidecar(const QString& picture, SidecarNaming naming,
                 const std::function<void(Exiv2::XmpData&)>& change, QString* error)
{
    prepareExiv2();
    const QStringList existing = XmpSidecar::existingPaths(picture);
    const QString target = existing.isEmpty() ? XmpSidecar::pathFor(picture, naming) : existing.constFirst();
    return guardedForeignCall(
        [&] {
            Exiv2::XmpData xmp;
            if (!existing.isEmpty() && !readSidecar(target, xmp, error))
                return false;
            change(xmp);
            if (existing.isEmpty() && xmp.empty())
                return true; // nothing to keep: no file
            const auto text = XmpSidecarText::encode(xmp);
            if (!text) {
                setError(error, QStringLiteral("%1: the XMP could not be encoded").arg(target));
                return false;
            }
            const QByteArray contents = QByteArray::fromStdString(*text);
            QString why;
            const bool written = existing.isEmpty() ? FileReplacer::createFile(target, contents, &why)
                                                    : FileReplacer::replaceContents(target, contents, &why);
            if (!written)
                setError(error, QStringLiteral("%1: %2").arg(target, why));
            return written;
        },
        [&](const QString& why) {
            setError(error, QStringLiteral("%1: %2").arg(target, why));
            return false;
        });
}

} // namespace

std::optional<PictureMarks> XmpSidecar::read(const QString& picture, QString* error)
{
    prepareExiv2();
    const QStringList sidecars = existingPaths(picture);
    return guardedForeignCall(
        [&]() -> std::optional<PictureMarks> {
            if (!sidecars.isEmpty()) {
                Exiv2::XmpData xmp;
                if (!readSidecar(sidecars.constFirst(), xmp, error))
                    return std::nullopt;
                return marksOf(xmp, std::nullopt);
            }
            auto image = Exiv2::ImageFactory::open(FileNameCodec::encode(picture).toStdString());
            if (!image.get())
                return PictureMarks{};
            image->readMetadata();
            std::optional<long> exifRating;
            const Exiv2::ExifData& exif = image->exifData();
            if (const auto it = exif.findKey(Exiv2::ExifKey("Exif.Image.Rating"));
                it != exif.end() && it->count())
                exifRating = it->toLong();
            return marksOf(image->xmpData(), exifRating);
        },
        // A picture exiv2 cannot parse carries no marks it could read.
        [&](const QString&) -> std::optional<PictureMarks> {
            return sidecars.isEmpty() ? std::optional<PictureMarks>(PictureMarks{}) : std::nullopt;
        });
}

bool XmpSidecar::writeRating(const QString& picture, int stars, PickFlag flag, SidecarNaming naming,
                             QString* error)
{
    const int rating = flag == PickFlag::rejected ? -1 : std::clamp(stars, 0, 5);
    return editSidecar(
        picture, naming,
        [&](Exiv2::XmpData& xmp) {
            xmp[Properties::rating] = std::to_string(rating);
            Properties::erase(xmp, Properties::pickLabel);
            if (flag != PickFlag::none)
                xmp[Properties::pickLabel] = flag == PickFlag::picked ? "3" : "1";
        },
        error);
}

bool XmpSidecar::writeColours(const QString& picture, const QStringList& colours, SidecarNaming naming,
                              QString* error)
{
    return editSidecar(
        picture, naming,
        [&](Exiv2::XmpData& xmp) {
            std::vector<std::string> names;
            for (const QString& colour : colours)
                names.push_back(colour.toStdString());
            Properties::setColours(xmp, names);
        },
        error);
}

} // namespace lumaro::platform
