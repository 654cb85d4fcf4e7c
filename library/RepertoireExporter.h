// SPDX-License-Identifier: GPL-3.0-or-later
// Hands a bundle on: its pictures copied into a folder with their tags, times and sidecars, or into a zip.
#pragma once

#include "library/RepertoireStore.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace lumaro::library {

struct RepertoireExportResult
{
    QStringList written;  // paths written (pictures and sidecars; the zip itself for a zip)
    QStringList missing;  // pictures of the bundle that are not where the bundle knows them
    QStringList failures; // "path: reason"
    bool ok() const { return missing.isEmpty() && failures.isEmpty(); }
};

// Blocking; any thread. Nothing is ever overwritten: a name taken in the target folder becomes "stem_1.ext"
// (its sidecars follow the picture's new name), and a zip is written only to a name that is free. Sidecars
// are the XMP files beside a picture named "IMG_1.xmp" or "IMG_1.CR2.xmp" (either case of the suffix). A
// picture that fails is named and skipped; the others are still exported.
class RepertoireExporter
{
public:
    static RepertoireExportResult toFolder(const QList<RepertoireItem>& items, const QString& folder);
    static RepertoireExportResult toZip(const QList<RepertoireItem>& items, const QString& zipPath);
    // The sidecar files of `picture` that exist.
    static QStringList sidecarsOf(const QString& picture);
};

} // namespace lumaro::library
