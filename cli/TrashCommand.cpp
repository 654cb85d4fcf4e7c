// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli trash FILE…: moves each file to the desktop's Trash and prints where it went; --restore puts back.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "browse/trash/FileDeleteService.h"
#include "platform/files/FileNameCodec.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

namespace {

int restoreFromTrash(const QStringList& files)
{
    QList<browse::DeletedFileInfo> records;
    for (const QString& file : files) {
        const QFileInfo info(file);
        browse::DeletedFileInfo record;
        record.fileName = info.fileName();
        record.folderPath = info.absolutePath();
        records << record;
    }
    // One batch: the Trash's records are read at most once, however many files come back.
    const QList<bool> restored = browse::FileDeleteService::shared().restoreFiles(records);
    int failed = 0;
    for (qsizetype i = 0; i < files.size(); ++i) {
        if (restored.at(i)) {
            standardOutput() << escapedForLine(QFileInfo(files.at(i)).absoluteFilePath()) << "\n";
            continue;
        }
        ++failed;
        standardError() << "lumaro-cli trash: " << escapedForLine(files.at(i))
                        << ": cannot put back (not in the Trash, or a file of that name is already there)\n";
    }
    standardOutput().flush();
    standardError().flush();
    return failed > 0 ? exitPartial : exitOk;
}

} // namespace

int runTrash(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("trash"),
                     QStringLiteral("Move each FILE to the Trash (never deleted outright); print where it went."));
    line.addPositional(QStringLiteral("FILE"), QStringLiteral("The files to move to the Trash."),
                       QStringLiteral("FILE..."));
    line.addJsonOption();
    line.addOption({QStringLiteral("restore"),
                    QStringLiteral("Put each FILE (its original path) back from the Trash instead; a file already "
                                   "there is never replaced.")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto files = line.positional(1);
    if (!files)
        return exitUsage;
    if (line.isSet(QStringLiteral("restore")))
        return restoreFromTrash(*files);

    QStringList missing;
    for (const QString& file : *files) {
        if (!platform::FileNameCodec::exists(file))
            missing << file;
    }
    if (missing.size() == files->size())
        return line.fail(QStringLiteral("no such file: %1").arg(missing.join(QStringLiteral(", "))), exitUsage);

    QTextStream& out = standardOutput();
    QJsonArray results;
    int failed = 0;
    for (const QString& file : *files) {
        const QFileInfo info(file);
        browse::TrashOutcome outcome;
        if (missing.contains(file))
            outcome.error = QStringLiteral("no such file");
        else
            outcome = browse::FileDeleteService::shared().moveToTrash(info.fileName(), info.absolutePath(), {});
        if (!outcome.ok()) {
            ++failed;
            standardError() << "lumaro-cli trash: " << escapedForLine(file) << ": " << outcome.error << "\n";
            standardError().flush();
        }
        if (line.json()) {
            QJsonObject result{{QStringLiteral("file"), file}};
            if (outcome.ok())
                result.insert(QStringLiteral("trashedPath"), *outcome.trashFilePath);
            else
                result.insert(QStringLiteral("error"), outcome.error);
            results.append(result);
        } else if (outcome.ok()) {
            out << escapedForLine(file) << " -> " << escapedForLine(*outcome.trashFilePath) << "\n";
        }
    }
    if (line.json())
        out << QJsonDocument(results).toJson(QJsonDocument::Compact) << "\n";
    out.flush();
    return failed > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
