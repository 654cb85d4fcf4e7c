// SPDX-License-Identifier: GPL-3.0-or-later
// A sidecar's name and its travels with its picture: file operations only, kept apart from the XMP reading
// and writing so the commands that move, copy or trash pictures do not load exiv2.
#include "platform/metadata/XmpSidecar.h"

#include "platform/DirectoryLister.h"
#include "platform/FileCopier.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/SidecarNames.h"

namespace lumaro::platform {

QString XmpSidecar::pathFor(const QString& picture, SidecarNaming naming)
{
    const qsizetype slash = picture.lastIndexOf(QLatin1Char('/'));
    const qsizetype dot = picture.lastIndexOf(QLatin1Char('.'));
    if (naming == SidecarNaming::stem && dot > slash + 1)
        return picture.left(dot) + QStringLiteral(".xmp");
    return picture + QStringLiteral(".xmp");
}

QStringList XmpSidecar::existingPaths(const QString& picture)
{
    QStringList found;
    for (const std::string& candidate : sidecarCandidates(FileNameCodec::encode(picture).toStdString())) {
        const QString path = FileNameCodec::decode(QByteArray::fromStdString(candidate));
        if (FileNameCodec::isFile(path))
            found << path;
    }
    return found;
}

QStringList XmpSidecar::companionsOf(const QString& picture)
{
    QStringList companions;
    const QString stem = pathFor(picture, SidecarNaming::stem).chopped(4);
    bool stemShared = false;
    bool stemChecked = false;
    for (const QString& sidecar : existingPaths(picture)) {
        if (sidecar.chopped(4) == picture) {
            companions << sidecar;
            continue;
        }
        if (!stemChecked) {
            stemChecked = true;
            const qsizetype slash = picture.lastIndexOf(QLatin1Char('/'));
            const QString folder = slash < 0 ? QStringLiteral(".") : picture.left(slash);
            const QString ownName = picture.mid(slash + 1);
            const QString stemDot = stem.mid(slash + 1) + QLatin1Char('.');
            for (const DirectoryEntry& entry :
                 DirectoryLister::listVisible(folder).value_or(std::vector<DirectoryEntry>())) {
                const QString name = entry.name();
                if (name != ownName && name.startsWith(stemDot) && !isSidecarName(name) &&
                    name.indexOf(QLatin1Char('.'), stemDot.size()) < 0)
                    stemShared = true;
            }
        }
        if (!stemShared)
            companions << sidecar;
    }
    return companions;
}

QString XmpSidecar::renamedCompanion(const QString& picture, const QString& companion,
                                     const QString& newPicture)
{
    const QString suffix = companion.right(4); // ".xmp" or ".XMP", kept as it was
    if (companion.chopped(4) == picture)
        return newPicture + suffix;
    return pathFor(newPicture, SidecarNaming::stem).chopped(4) + suffix;
}

QStringList XmpSidecar::copyCompanions(const QString& picture, const QString& copiedPicture)
{
    QStringList notCopied;
    for (const QString& sidecar : companionsOf(picture)) {
        const QString target = renamedCompanion(picture, sidecar, copiedPicture);
        const qsizetype slash = target.lastIndexOf(QLatin1Char('/'));
        QString error;
        if (FileNameCodec::exists(target))
            notCopied << target + QStringLiteral(": already there, kept");
        else if (!FileCopier::copyWithoutOverwriting(sidecar, target.left(slash), target.mid(slash + 1),
                                                     &error))
            notCopied << sidecar + QStringLiteral(": ") + error;
    }
    return notCopied;
}

bool XmpSidecar::isSidecarName(const QString& fileName)
{
    return fileName.endsWith(QLatin1String(".xmp"), Qt::CaseInsensitive);
}

} // namespace lumaro::platform
