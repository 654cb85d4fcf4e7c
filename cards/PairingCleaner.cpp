// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/PairingCleaner.h"

#include "cards/ByteCountFormatter.h"
#include "platform/FolderFiles.h"
#include "platform/Log.h"
#include "platform/Trash.h"
#include "platform/metadata/XmpSidecar.h"

namespace lumaro::cards {

using platform::Log;

PairingCleaner::PairingCleaner(platform::Trash& trash)
    : m_trash(trash)
{
}

QString PairingCleaner::completionMessage(int count, qint64 freedBytes)
{
    return QStringLiteral("清理完成！已删除 ") + QString::number(count) + QStringLiteral(" 个冗余RAW文件，释放了 ")
         + ByteCountFormatter::string(freedBytes);
}

QString PairingCleaner::freedOnlyMessage(qint64 freedBytes)
{
    return QStringLiteral("清理完成！释放了 ") + ByteCountFormatter::string(freedBytes);
}

QString PairingCleaner::partialFailureMessage()
{
    return QStringLiteral("清理过程中出现错误，请检查文件权限");
}

QString PairingCleaner::failureMessage()
{
    return QStringLiteral("清理失败，请检查文件权限");
}

CleanResult PairingCleaner::clean(const QStringList& unmatchedFiles, const Progress& progress) const
{
    CleanResult result;
    const qsizetype total = unmatchedFiles.size();
    for (qsizetype i = 0; i < total; ++i) {
        const QString& path = unmatchedFiles.at(i);
        QString sizeError;
        const auto size = platform::FolderFiles::sizeOf(path, &sizeError);
        QString error;
        const QStringList sidecars = platform::XmpSidecar::companionsOf(path);
        if (m_trash.moveToTrash(path, &error)) {
            result.cleanedFilesCount += 1;
            result.freedSpace += size.value_or(0);
            // The RAW's sidecar goes with it; one left behind is only logged (the RAW is in the Trash).
            for (const QString& sidecar : sidecars) {
                if (!m_trash.moveToTrash(sidecar, &error))
                    Log::raw(QStringLiteral("Error moving sidecar to trash: ") + error +
                             QStringLiteral(" - ") + sidecar);
            }
        } else {
            Log::raw(QStringLiteral("Error moving file to trash: ") + error + QStringLiteral(" - ") + path);
            result.failedFilesCount += 1;
            result.failures.append({path, error});
        }
        if (progress)
            progress(double(i + 1) / double(total));
    }
    result.timestamp = QDateTime::currentDateTime();
    result.success = result.failedFilesCount == 0;
    if (result.success)
        result.message = completionMessage(result.cleanedFilesCount, result.freedSpace);
    else if (result.cleanedFilesCount == 0)
        result.message = failureMessage();
    else
        result.message = partialFailureMessage();
    return result;
}

} // namespace lumaro::cards
