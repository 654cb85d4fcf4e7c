// SPDX-License-Identifier: GPL-3.0-or-later
// One file of a shoot as the report sees it: where it is, what kind it is, what its header and tags say.
#pragma once

#include "platform/metadata/CaptureMetadata.h"

#include <QString>
#include <QStringList>

namespace lumaro::report {

// A JPEG and a RAW (or HEIF) of one shot are different kinds, so they can be counted as one exposure.
enum class FileKind
{
    jpeg,
    raw,
    heif,
    other
};

struct ShotFile
{
    QString path;
    QString folder;
    FileKind kind = FileKind::other;
    platform::CaptureMetadata metadata;
    QStringList tags;                 // colour tags (and other programs' tags)
    std::optional<int> sidecarRating; // xmp:Rating of a NAME.xmp or STEM.xmp sidecar beside it
};

// nullopt for a file that is no picture (by its lower-cased extension).
std::optional<FileKind> fileKindOf(const QString& fileName);

} // namespace lumaro::report
