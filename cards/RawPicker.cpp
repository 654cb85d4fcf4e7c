// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/RawPicker.h"

#include "platform/FileCopier.h"
#include "platform/Log.h"
#include "platform/metadata/XmpSidecar.h"

#include <QDir>
#include <QFileInfo>

namespace lumaro::cards {

using platform::Log;

QString RawPicker::pickFolderFor(const QString& rawFolder)
{
    QString folder = QDir::cleanPath(rawFolder);
    const qsizetype slash = folder.lastIndexOf(QLatin1Char('/'));
    const QString parent = slash > 0 ? folder.left(slash) : (slash == 0 ? QStringLiteral("/") : QStringLiteral("."));
    return QDir(parent).filePath(QStringLiteral("RAW_PICK"));
}

PickResult RawPicker::pick(const QStringList& matchedRawFiles, const QString& rawFolder, const Progress& progress)
{
    PickResult result;
    const QString folder = pickFolderFor(rawFolder);
    const QFileInfo existing(folder);
    if (existing.exists() && !existing.isDir()) {
        Log::raw(QStringLiteral("Error creating RAW_PICK: ") + folder + QStringLiteral(" exists and is not a folder"));
        result.errorMessage = QStringLiteral("PICK失败，请检查权限");
        return result;
    }
    if (!existing.exists() && !QDir().mkpath(folder)) {
        Log::raw(QStringLiteral("Error creating RAW_PICK: cannot create ") + folder);
        result.errorMessage = QStringLiteral("PICK失败，请检查权限");
        return result;
    }
    result.pickFolder = folder;
    const qsizetype total = matchedRawFiles.size();
    for (qsizetype i = 0; i < total; ++i) {
        const QString& source = matchedRawFiles.at(i);
        const QString target = QDir(folder).filePath(QFileInfo(source).fileName());
        QString error;
        if (i + 1 < total)
            platform::FileCopier::readAheadSoon(matchedRawFiles.at(i + 1));
        if (QFileInfo(target).isDir()) {
            Log::raw(QStringLiteral("copy error: ") + target + QStringLiteral(" is a folder"));
            result.failedCount += 1;
            result.failures.append({source, target + QStringLiteral(" is a folder")});
        } else if (platform::FileCopier::copyReplacing(source, target, &error)) {
            result.copiedCount += 1;
            for (const QString& missed : platform::XmpSidecar::copyCompanions(source, target))
                Log::raw(QStringLiteral("copy sidecar: ") + missed);
        } else {
            Log::raw(QStringLiteral("copy error: ") + error + QStringLiteral(" - ") + source);
            result.failedCount += 1;
            result.failures.append({source, error});
        }
        if (progress)
            progress(double(i + 1) / double(total));
    }
    return result;
}

} // namespace lumaro::cards
