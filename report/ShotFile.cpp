// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ShotFile.h"

#include <QSet>

namespace lumaro::report {

std::optional<FileKind> fileKindOf(const QString& fileName)
{
    static const QSet<QString> raw{
        QStringLiteral("cr2"), QStringLiteral("cr3"), QStringLiteral("crw"), QStringLiteral("nef"),
        QStringLiteral("nrw"), QStringLiteral("arw"), QStringLiteral("srf"), QStringLiteral("sr2"),
        QStringLiteral("raf"), QStringLiteral("orf"), QStringLiteral("rw2"), QStringLiteral("dng"),
        QStringLiteral("pef"), QStringLiteral("srw"), QStringLiteral("rwl"), QStringLiteral("3fr"),
        QStringLiteral("iiq"), QStringLiteral("x3f"),
    };
    static const QSet<QString> other{QStringLiteral("png"),  QStringLiteral("tif"), QStringLiteral("tiff"),
                                     QStringLiteral("webp"), QStringLiteral("bmp"), QStringLiteral("gif")};
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    if (dot <= 0)
        return std::nullopt;
    const QString suffix = fileName.mid(dot + 1).toLower();
    if (suffix == QLatin1String("jpg") || suffix == QLatin1String("jpeg"))
        return FileKind::jpeg;
    if (suffix == QLatin1String("heic") || suffix == QLatin1String("heif") || suffix == QLatin1String("hif"))
        return FileKind::heif;
    if (raw.contains(suffix))
        return FileKind::raw;
    if (other.contains(suffix))
        return FileKind::other;
    return std::nullopt;
}

} // namespace lumaro::report
