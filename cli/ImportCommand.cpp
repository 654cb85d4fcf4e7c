// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli import MOUNT [--to DIR]: copies a card's pictures and videos into the next rollNN folder.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/ProgressBar.h"

#include "cards/CardImportService.h"
#include "cards/CardImporter.h"
#include "cards/CardScanner.h"
#include "cards/ImportLocation.h"
#include "platform/QSettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

int runImport(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("import"),
                     QStringLiteral("Copy the JPG, RAW and video files of the card at MOUNT into the next free rollNN "
                                    "folder of the import location (sub-folders JPG, RAW, VIDEO, made only for kinds "
                                    "that have files). Nothing is overwritten and nothing is removed from the card."));
    line.addPositional(QStringLiteral("MOUNT"), QStringLiteral("The card's mount path."));
    line.addOption({QStringLiteral("to"),
                    QStringLiteral("The import location (default: the app's setting, else ~/Pictures/Lumaro)."),
                    QStringLiteral("DIR")});
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto checked = line.folderArgument(QStringLiteral("import takes one mount path"));
    if (!checked)
        return exitUsage;
    const QString mount = *checked;
    const QString location = line.isSet(QStringLiteral("to"))
                               ? line.value(QStringLiteral("to"))
                               : cards::ImportLocation(platform::QSettingsStore::shared()).path();
    if (location.isEmpty())
        return line.fail(QStringLiteral("no import location: pass --to DIR"), exitUsage);
    const QFileInfo target(location);
    if (target.exists() && !target.isDir())
        return line.fail(QStringLiteral("is a file, not a folder: %1").arg(location), exitUsage);

    const cards::NewFileInfo files = cards::CardScanner::scan(mount);
    QTextStream& out = standardOutput();
    if (files.isEmpty()) {
        out << cards::CardImportService::describe(files) << "\n";
        out.flush();
        return exitOk;
    }
    ProgressBar bar(QStringLiteral("Import"), std::max<qint64>(1, files.totalSize));
    qint64 shown = 0;
    cards::CardImporter::Callbacks callbacks;
    callbacks.progress = [&](double done) {
        const qint64 now = qint64(done * double(std::max<qint64>(1, files.totalSize)));
        if (now > shown) {
            bar.advance(now - shown);
            shown = now;
        }
    };
    const cards::ImportOutcome outcome =
        cards::CardImporter::importFiles(files, QDir(location).absolutePath(), callbacks);
    bar.finish();
    if (!outcome.error.isEmpty())
        return line.fail(outcome.error, exitPartial);
    if (line.json()) {
        out << QJsonDocument(QJsonObject{{QStringLiteral("destination"), outcome.destination},
                                         {QStringLiteral("copied"), outcome.copiedCount},
                                         {QStringLiteral("renamed"), outcome.renamedCount},
                                         {QStringLiteral("failed"), outcome.failedCount}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
    } else {
        out << cards::CardImportService::describe(files) << "\n"
            << "导入的文件已保存到：" << escapedForLine(outcome.destination) << "\n";
        if (outcome.failedCount > 0)
            out << "Failed: " << outcome.failedCount << "\n";
    }
    out.flush();
    return outcome.failedCount > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
