// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/NameWorkCommand.h"

#include "cli/CommandLine.h"
#include "cli/ExitCode.h"
#include "cli/ProgressBar.h"

#include "browse/state/FileSystemService.h"
#include "vision/NameGroupingService.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

using vision::NameWorkOutcome;
using vision::NameWorkResult;

namespace {

QJsonObject toJson(const NameWorkResult& result)
{
    QJsonArray renames;
    for (const vision::NameRename& rename : result.renames)
        renames.append(QJsonObject{{QStringLiteral("from"), rename.from}, {QStringLiteral("to"), rename.to}});
    return {{QStringLiteral("dryRun"), result.dryRun},
            {QStringLiteral("groups"), result.groupCount},
            {QStringLiteral("renames"), renames},
            {QStringLiteral("skipped"), QJsonArray::fromStringList(result.skipped)},
            {QStringLiteral("failures"), QJsonArray::fromStringList(result.failures)},
            {QStringLiteral("message"), result.message}};
}

void print(const NameWorkResult& result, bool json)
{
    QTextStream& out = standardOutput();
    if (json) {
        out << QJsonDocument(toJson(result)).toJson(QJsonDocument::Compact) << "\n";
    } else {
        for (const vision::NameRename& rename : result.renames)
            out << escapedForLine(rename.from) << " -> " << escapedForLine(rename.to) << "\n";
        for (const QString& name : result.skipped)
            out << "skipped: " << escapedForLine(name) << "\n";
        out << escapedForLine(result.message) << "\n";
    }
    out.flush();
}

} // namespace

int runNameWork(NameWork work, const QStringList& arguments)
{
    const bool grouping = work == NameWork::group;
    const QString name = grouping ? QStringLiteral("group") : QStringLiteral("ungroup");
    CommandLine line(name, grouping ? QStringLiteral("Put a group prefix \"_G<n>_\" in front of the pictures of FOLDER, "
                                                     "one group per run of related files; needs the folder's vision index.")
                                    : QStringLiteral("Take the group prefixes \"_G<n>_\" off the pictures of FOLDER."));
    line.addPositional(QStringLiteral("FOLDER"), QStringLiteral("The folder whose pictures are renamed."));
    line.addJsonOption();
    line.addOption({QStringLiteral("dry-run"), QStringLiteral("Print the renames without doing them.")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto checked = line.folderArgument(name + QStringLiteral(" takes one folder"));
    if (!checked)
        return exitUsage;
    const QString folder = *checked;

    const QStringList names = browse::FileSystemService::shared().loadImageFileNames(folder);
    ProgressBar progress(grouping ? QStringLiteral("Grouping") : QStringLiteral("Ungrouping"), names.size());
    vision::NameWorkOptions options;
    options.dryRun = line.isSet(QStringLiteral("dry-run"));
    options.progress = [&progress](int, int) { progress.advance(); };
    const vision::NameGroupingService service;
    const NameWorkResult result = grouping ? service.groupFiles(folder, names, options)
                                           : service.cleanPrefixes(folder, names, options);
    progress.finish();

    switch (result.outcome) {
    case NameWorkOutcome::missingIndex:
        return line.fail(QStringLiteral("no vision index in %1/_index: index the folder first, grouping needs its "
                                        "marks to keep people pictures apart")
                             .arg(folder),
                         exitUsage);
    case NameWorkOutcome::folderUnavailable:
        return line.fail(result.message, exitUsage);
    case NameWorkOutcome::failed:
        return line.fail(result.message, exitPartial);
    case NameWorkOutcome::nothingToDo:
    case NameWorkOutcome::completed:
        break;
    }
    print(result, line.json());
    return result.leftFilesUnrenamed() ? exitPartial : exitOk;
}

} // namespace lumaro::cli
