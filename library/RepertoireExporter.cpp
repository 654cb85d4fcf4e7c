// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/RepertoireExporter.h"

#include "platform/FileCopier.h"
#include "platform/Log.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/ZipWriter.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace lumaro::library {

namespace {

const QString kTag = QStringLiteral("RepertoireExporter");

// The sidecar's name for a picture now called `pictureName`: "IMG_1_1.xmp" or "IMG_1_1.CR2.xmp".
QString sidecarNameFor(const QString& sidecar, const QString& originalPicture, const QString& pictureName)
{
    const QString sidecarName = QFileInfo(sidecar).fileName();
    const QString original = QFileInfo(originalPicture).fileName();
    const QString suffix = sidecarName.mid(sidecarName.lastIndexOf(QLatin1Char('.')));
    if (sidecarName.startsWith(original + QLatin1Char('.')))
        return pictureName + suffix;
    return QFileInfo(pictureName).completeBaseName() + suffix;
}

// A name not yet used inside the zip: "IMG_1.JPG", then "IMG_1_1.JPG", …
QString freeZipName(QSet<QString>& taken, const QString& name)
{
    const QFileInfo info(name);
    QString candidate = name;
    for (int n = 1; taken.contains(candidate.toLower()); ++n)
        candidate = info.completeBaseName() + QStringLiteral("_%1").arg(n) +
                    (info.suffix().isEmpty() ? QString() : QLatin1Char('.') + info.suffix());
    taken.insert(candidate.toLower());
    return candidate;
}

} // namespace

QStringList RepertoireExporter::sidecarsOf(const QString& picture)
{
    const QFileInfo info(picture);
    const QString stem = info.absolutePath() + QLatin1Char('/') + info.completeBaseName();
    QStringList found;
    // A QStringList, not a braced list: with QStringBuilder a braced list holds the unevaluated sums, which
    // refer to temporaries gone before the loop reads them.
    const QStringList candidates{picture + QStringLiteral(".xmp"), picture + QStringLiteral(".XMP"),
                                 stem + QStringLiteral(".xmp"), stem + QStringLiteral(".XMP")};
    for (const QString& candidate : candidates) {
        if (platform::FileNameCodec::isFile(candidate) && !found.contains(candidate))
            found << candidate;
    }
    return found;
}

RepertoireExportResult RepertoireExporter::toFolder(const QList<RepertoireItem>& items, const QString& folder)
{
    RepertoireExportResult result;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const RepertoireItem& item = items.at(i);
        if (i + 1 < items.size())
            platform::FileCopier::readAheadSoon(items.at(i + 1).filePath);
        if (!item.isPresent || !platform::FileNameCodec::isFile(item.filePath)) {
            result.missing << item.filePath;
            continue;
        }
        QString error;
        const auto copied = platform::FileCopier::copyWithoutOverwriting(
            item.filePath, folder, QFileInfo(item.filePath).fileName(), &error);
        if (!copied) {
            result.failures << item.filePath + QStringLiteral(": ") + error;
            platform::Log::line(kTag, QStringLiteral("❌ 导出失败: %1 (%2)").arg(item.filePath, error));
            continue;
        }
        result.written << *copied;
        const QString newName = QFileInfo(*copied).fileName();
        for (const QString& sidecar : sidecarsOf(item.filePath)) {
            const auto side = platform::FileCopier::copyWithoutOverwriting(
                sidecar, folder, sidecarNameFor(sidecar, item.filePath, newName), &error);
            if (side)
                result.written << *side;
            else
                result.failures << sidecar + QStringLiteral(": ") + error;
        }
    }
    platform::Log::line(kTag, QStringLiteral("✅ 导出 %1 个文件到 %2").arg(result.written.size()).arg(folder));
    return result;
}

RepertoireExportResult RepertoireExporter::toZip(const QList<RepertoireItem>& items, const QString& zipPath)
{
    RepertoireExportResult result;
    QList<QPair<QString, QString>> entries;
    QSet<QString> taken;
    for (const RepertoireItem& item : items) {
        if (!item.isPresent || !platform::FileNameCodec::isFile(item.filePath)) {
            result.missing << item.filePath;
            continue;
        }
        const QString name = freeZipName(taken, QFileInfo(item.filePath).fileName());
        entries.append({item.filePath, name});
        for (const QString& sidecar : sidecarsOf(item.filePath))
            entries.append({sidecar, freeZipName(taken, sidecarNameFor(sidecar, item.filePath, name))});
    }
    if (const auto failure = platform::ZipWriter::write(zipPath, entries)) {
        result.failures << zipPath + QStringLiteral(": ") + *failure;
        return result;
    }
    result.written << zipPath;
    return result;
}

} // namespace lumaro::library
