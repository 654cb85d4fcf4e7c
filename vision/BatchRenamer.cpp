// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/BatchRenamer.h"

#include "platform/Log.h"
#include "platform/metadata/XmpSidecar.h"

#include <QDir>
#include <QFileInfo>

namespace lumaro::vision {

using platform::Log;

namespace {

bool entryExists(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

} // namespace

BatchRenamer::BatchRenamer(RenameFunction rename, QString failureText)
    : m_rename(std::move(rename))
    , m_failureText(std::move(failureText))
{
}

BatchRenameReport BatchRenamer::run(const QString& folder, const QList<NameRename>& renames, bool dryRun,
                                    const std::function<void(int done, int total)>& progress) const
{
    const QDir dir(folder);
    BatchRenameReport report;
    int done = 0;
    for (const NameRename& rename : renames) {
        const QString from = dir.filePath(rename.from);
        const QString target = dir.filePath(rename.to);
        const QStringList sidecars = dryRun ? QStringList() : platform::XmpSidecar::companionsOf(from);
        if (entryExists(target)) {
            Log::raw(QStringLiteral("文件已存在，跳过: ") + rename.to);
            report.skipped << rename.from;
        } else if (dryRun) {
            report.renamed << rename;
        } else if (QString error; m_rename(from, target, &error)) {
            report.renamed << rename;
            renameSidecars(sidecars, from, target);
        } else {
            const QString failure = rename.from + QStringLiteral(" -> ") + rename.to + QStringLiteral(": ") + error;
            Log::raw(m_failureText + failure);
            report.failures << failure;
        }
        if (progress)
            progress(++done, int(renames.size()));
    }
    return report;
}

void BatchRenamer::renameSidecars(const QStringList& sidecars, const QString& from, const QString& to) const
{
    // The picture has its new name already; a sidecar whose new name is taken keeps its old one (logged).
    for (const QString& sidecar : sidecars) {
        const QString renamed = platform::XmpSidecar::renamedCompanion(from, sidecar, to);
        QString error;
        if (entryExists(renamed) || !m_rename(sidecar, renamed, &error))
            Log::raw(m_failureText + sidecar + QStringLiteral(" -> ") + renamed + QStringLiteral(": ") +
                     (error.isEmpty() ? QStringLiteral("文件已存在") : error));
    }
}

} // namespace lumaro::vision
