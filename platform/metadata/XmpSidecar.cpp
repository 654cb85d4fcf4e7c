// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/metadata/XmpSidecar.h"

#include "platform/DirectoryLister.h"
#include "platform/FileCopier.h"
#include "platform/FileReplacer.h"
#include "platform/ForeignCall.h"
#include "platform/files/FileNameCodec.h"
#include "platform/metadata/Exiv2Setup.h"

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <array>
#include <functional>

namespace lumaro::platform {

namespace {

const char* const kRating = "Xmp.xmp.Rating";
const char* const kLabel = "Xmp.xmp.Label";
const char* const kPickLabel = "Xmp.digiKam.PickLabel";
const char* const kColorLabel = "Xmp.digiKam.ColorLabel";
const char* const kDarktableLabels = "Xmp.darktable.colorlabels";

struct Colour
{
    const char* name;  // ours, and the file tag's
    const char* label; // xmp:Label as Lightroom and digiKam spell it
    int darktable;     // index in darktable:colorlabels, −1 where darktable has no such colour
    int digiKam;       // digiKam:ColorLabel
};

constexpr std::array<Colour, 6> kColours{{
    {"red", "Red", 0, 1},
    {"yellow", "Yellow", 1, 3},
    {"orange", "Orange", -1, 2},
    {"green", "Green", 2, 4},
    {"blue", "Blue", 3, 5},
    {"purple", "Purple", 4, 6},
}};

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

std::optional<long> number(const Exiv2::XmpData& xmp, const char* key)
{
    const auto it = xmp.findKey(Exiv2::XmpKey(key));
    if (it == xmp.end() || it->count() == 0)
        return std::nullopt;
    bool ok = false;
    const double value = QString::fromStdString(it->toString()).trimmed().toDouble(&ok);
    return ok ? std::optional<long>(long(value)) : std::nullopt;
}

QStringList coloursOf(const Exiv2::XmpData& xmp)
{
    QStringList found;
    auto add = [&found](const Colour& colour) {
        if (!found.contains(QLatin1String(colour.name)))
            found << QLatin1String(colour.name);
    };
    if (const auto it = xmp.findKey(Exiv2::XmpKey(kLabel)); it != xmp.end()) {
        const QString label = QString::fromStdString(it->toString()).trimmed();
        for (const Colour& colour : kColours) {
            if (label.compare(QLatin1String(colour.label), Qt::CaseInsensitive) == 0 ||
                (colour.digiKam == 6 && label.compare(QLatin1String("Magenta"), Qt::CaseInsensitive) == 0))
                add(colour);
        }
    }
    if (const auto it = xmp.findKey(Exiv2::XmpKey(kDarktableLabels)); it != xmp.end()) {
        for (long i = 0; i < it->count(); ++i) {
            const long index = QString::fromStdString(it->toString(i)).toLong();
            for (const Colour& colour : kColours) {
                if (colour.darktable >= 0 && colour.darktable == index)
                    add(colour);
            }
        }
    }
    if (const auto code = number(xmp, kColorLabel)) {
        for (const Colour& colour : kColours) {
            if (colour.digiKam == *code)
                add(colour);
        }
    }
    // In the order of the colour keys, whichever property named them.
    QStringList ordered;
    for (const Colour& colour : kColours) {
        if (found.contains(QLatin1String(colour.name)))
            ordered << QLatin1String(colour.name);
    }
    return ordered;
}

PictureMarks marksOf(const Exiv2::XmpData& xmp, std::optional<long> exifRating)
{
    PictureMarks marks;
    const auto rating = number(xmp, kRating) ? number(xmp, kRating) : exifRating;
    if (rating && *rating < 0)
        marks.flag = PickFlag::rejected;
    else if (rating)
        marks.stars = int(std::clamp(*rating, 0L, 5L));
    const auto pick = number(xmp, kPickLabel);
    if (pick == 1) {
        marks.flag = PickFlag::rejected;
        marks.stars = 0;
    } else if (pick == 3 && marks.flag == PickFlag::none) {
        marks.flag = PickFlag::picked;
    }
    marks.colours = coloursOf(xmp);
    return marks;
}

void erase(Exiv2::XmpData& xmp, const char* key)
{
    for (auto it = xmp.findKey(Exiv2::XmpKey(key)); it != xmp.end(); it = xmp.findKey(Exiv2::XmpKey(key)))
        xmp.erase(it);
}

// Nothing but blanks, or an XML declaration alone: the sidecar an earlier version left when the last mark
// was taken off. It holds no marks; Exiv2 calls it invalid.
bool holdsNoPacket(const QByteArray& bytes)
{
    QByteArray rest = bytes.trimmed();
    if (rest.startsWith("<?xml")) {
        const qsizetype end = rest.indexOf("?>");
        rest = end < 0 ? rest : rest.mid(end + 2).trimmed();
    }
    return rest.isEmpty();
}

// What a sidecar whose last mark was taken off holds: an empty description, still valid XMP for every reader.
constexpr char emptyPacket[] = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
                               " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"/>\n"
                               "</x:xmpmeta>\n";

std::optional<QByteArray> readSidecar(const QString& path, Exiv2::XmpData& xmp, QString* error)
{
    bool ok = false;
    const QByteArray bytes = FileNameCodec::readAll(path, &ok, 16 * 1024 * 1024);
    if (!ok) {
        setError(error, QStringLiteral("%1: cannot be read").arg(path));
        return std::nullopt;
    }
    if (!holdsNoPacket(bytes) && Exiv2::XmpParser::decode(xmp, bytes.toStdString()) != 0) {
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
            std::string packet;
            if (Exiv2::XmpParser::encode(packet, xmp,
                                         Exiv2::XmpParser::omitPacketWrapper |
                                             Exiv2::XmpParser::useCompactFormat) != 0) {
                setError(error, QStringLiteral("%1: the XMP could not be encoded").arg(target));
                return false;
            }
            const QByteArray contents = QByteArrayLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n") +
                                        QByteArray::fromStdString(packet.empty() ? emptyPacket : packet);
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
            xmp[kRating] = std::to_string(rating);
            erase(xmp, kPickLabel);
            if (flag != PickFlag::none)
                xmp[kPickLabel] = flag == PickFlag::picked ? "3" : "1";
        },
        error);
}

bool XmpSidecar::writeColours(const QString& picture, const QStringList& colours, SidecarNaming naming,
                              QString* error)
{
    return editSidecar(
        picture, naming,
        [&](Exiv2::XmpData& xmp) {
            erase(xmp, kLabel);
            erase(xmp, kColorLabel);
            erase(xmp, kDarktableLabels);
            const Colour* last = nullptr;
            Exiv2::XmpArrayValue darktable(Exiv2::xmpSeq);
            for (const Colour& colour : kColours) {
                if (!colours.contains(QLatin1String(colour.name)))
                    continue;
                if (!last ||
                    colours.indexOf(QLatin1String(colour.name)) > colours.indexOf(QLatin1String(last->name)))
                    last = &colour;
                if (colour.darktable >= 0)
                    darktable.read(std::to_string(colour.darktable));
            }
            if (!last)
                return;
            // One label only in xmp:Label and digiKam: the colour given last.
            xmp[kLabel] = last->label;
            xmp[kColorLabel] = std::to_string(last->digiKam);
            if (darktable.count() > 0)
                xmp.add(Exiv2::XmpKey(kDarktableLabels), &darktable);
        },
        error);
}

} // namespace lumaro::platform
