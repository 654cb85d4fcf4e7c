// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/BatchRenamer.h"

#include "platform/Log.h"

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
        const QString target = dir.filePath(rename.to);
        if (entryExists(target)) {
            Log::raw(QStringLiteral("文件已存在，跳过: ") + rename.to);
            report.skipped << rename.from;
        } else if (dryRun) {
            report.renamed << rename;
        } else if (QString error; m_rename(dir.filePath(rename.from), target, &error)) {
            report.renamed << rename;
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

} // namespace lumaro::vision
