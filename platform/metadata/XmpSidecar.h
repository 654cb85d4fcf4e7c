// SPDX-License-Identifier: GPL-3.0-or-later
// A picture's XMP sidecar: where it is, what it says about stars, picks and colours, and changing just that.
#pragma once

#include "platform/metadata/PictureMarks.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::platform {

// How a new sidecar is named: "IMG_1.CR2.xmp" (darktable, digiKam) or "IMG_1.xmp" (Lightroom, Capture One).
enum class SidecarNaming
{
    pictureName,
    stem,
};

// Thread-safe, blocking (exiv2 and small files): meant for pool threads and the command line. An existing
// sidecar is used whichever of the two names it has (the full name first), and only the properties named in
// PictureMarks are changed: every other property of it (an editor's history, keywords, GPS) is kept. The
// picture file itself is never written. A sidecar is rewritten through a temporary file and a rename; a new
// one never replaces a file; a sidecar that does not parse as XMP is left alone and the change refused.
class XmpSidecar
{
public:
    static QString pathFor(const QString& picture, SidecarNaming naming);
    // The sidecars beside `picture` that exist, the full name first: NAME.EXT.xmp, NAME.xmp (either case).
    static QStringList existingPaths(const QString& picture);
    // The sidecars that go with `picture` when it is moved, copied, renamed or trashed: its full-name ones
    // always, a stem one only when no other file of its folder has that stem (a JPEG and its RAW share
    // "IMG_1.xmp": it stays with whichever of them is left).
    static QStringList companionsOf(const QString& picture);
    // The name `companion` (one of companionsOf(picture)) takes when the picture becomes `newPicture`.
    static QString renamedCompanion(const QString& picture, const QString& companion,
                                    const QString& newPicture);
    // Copies `picture`'s companions beside `copiedPicture` (its copy, perhaps under another name). A sidecar
    // already at a target name is kept, never replaced (it may hold an editor's work since). Returns what was
    // not copied, each with why.
    static QStringList copyCompanions(const QString& picture, const QString& copiedPicture);
    // Whether `fileName` is named like a sidecar (".xmp", any case).
    static bool isSidecarName(const QString& fileName);

    // The marks of `picture`: from its sidecar when it has one, else from its own embedded XMP (and EXIF
    // rating). Empty marks when it carries none; nullopt (with `error`) when a sidecar exists but cannot be
    // read.
    static std::optional<PictureMarks> read(const QString& picture, QString* error = nullptr);
    // Writes stars and flag (colours untouched).
    static bool writeRating(const QString& picture, int stars, PickFlag flag, SidecarNaming naming,
                            QString* error = nullptr);
    // Writes the colour labels (stars and flag untouched); an empty list removes them.
    static bool writeColours(const QString& picture, const QStringList& colours, SidecarNaming naming,
                             QString* error = nullptr);
};

} // namespace lumaro::platform
