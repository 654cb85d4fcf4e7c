// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli import MOUNT [--to DIR]: copies a card's pictures and videos into the next rollNN folder.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/FolderArgument.h"
#include "cli/ProgressBar.h"

#include "cards/CardImportJournal.h"
#include "cards/CardImportService.h"
#include "cards/CardImporter.h"
#include "cards/CardScanner.h"
#include "cards/ImportLocation.h"
#include "platform/QSettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

namespace {

QJsonObject summary(const cards::NewFileInfo& files, const cards::ImportOutcome& outcome)
{
    QJsonArray failures;
    for (const cards::FileFailure& failure : outcome.failures)
        failures.append(
            QJsonObject{{QStringLiteral("file"), failure.source}, {QStringLiteral("error"), failure.error}});
    return QJsonObject{
        {QStringLiteral("destination"), outcome.destination.isEmpty() ? QJsonValue() : outcome.destination},
        {QStringLiteral("copied"), outcome.copiedCount},
        {QStringLiteral("renamed"), outcome.renamedCount},
        {QStringLiteral("failed"), outcome.failedCount},
        {QStringLiteral("failures"), failures},
        {QStringLiteral("resumed"), outcome.resumed},
        {QStringLiteral("partialCopiesRemoved"), outcome.partialCopiesRemoved},
        {QStringLiteral("alreadyImported"), files.alreadyImportedCount},
        {QStringLiteral("skipped"), QJsonArray::fromStringList(files.skippedEntries)}};
}

void printSkipped(QTextStream& out, const cards::NewFileInfo& files)
{
    if (files.alreadyImportedCount > 0)
        out << "Already imported from this card: " << files.alreadyImportedCount
            << " (--all copies them again)\n";
    if (!files.skippedEntries.isEmpty())
        out << "Left on the card (hidden or system): " << files.skippedEntries.size() << "\n";
    for (const QString& entry : files.skippedEntries)
        out << "  " << escapedForLine(entry) << "\n";
}

} // namespace

int runImport(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("import"),
        QStringLiteral("Copy the JPG, RAW and video files of the card at MOUNT into the next free rollNN "
                       "folder of the import location (sub-folders JPG, RAW, VIDEO, made only for kinds "
                       "that have files). Only files not imported from this card before are copied; an "
                       "import that was cut "
                       "short is resumed in its own roll. Hidden and system entries stay on the card. "
                       "Nothing is overwritten and nothing is removed from the card."));
    line.addPositional(QStringLiteral("MOUNT"), QStringLiteral("The card's mount path."));
    line.addOption(
        {QStringLiteral("to"),
         QStringLiteral("The import location (default: the app's setting, else ~/Pictures/Lumaro)."),
         QStringLiteral("DIR")});
    line.addOption(
        {QStringLiteral("all"),
         QStringLiteral("Import everything again, also the files imported from this card before.")});
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
    if (const auto problem = problemWithOutputFolder(location))
        return line.fail(
            QStringLiteral("%1: %2; nothing was imported").arg(escapedForLine(location), *problem),
            exitUsage);

    const bool everything = line.isSet(QStringLiteral("all"));
    const cards::NewFileInfo all = cards::CardScanner::scan(mount);
    QString storeError;
    const auto journal = cards::CardImportJournal::open(mount, &storeError);
    if (!journal)
        standardError() << "lumaro-cli import: the cards imported before cannot be read (" << storeError
                        << "); every file on the card is offered\n";
    if (journal && everything)
        journal->forgetUnfinished();
    const cards::NewFileInfo files = journal && !everything ? journal->withoutImported(all) : all;
    QTextStream& out = standardOutput();
    if (files.isEmpty()) {
        if (line.json()) {
            out << QJsonDocument(summary(files, cards::ImportOutcome{})).toJson(QJsonDocument::Compact)
                << "\n";
        } else {
            out << cards::CardImportService::describe(files) << "\n";
            printSkipped(out, files);
        }
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
        cards::CardImporter::importFiles(files, QDir(location).absolutePath(), callbacks, journal.get());
    bar.finish();
    if (!outcome.error.isEmpty())
        return line.fail(outcome.error, exitPartial);
    if (line.json()) {
        out << QJsonDocument(summary(files, outcome)).toJson(QJsonDocument::Compact) << "\n";
    } else {
        out << cards::CardImportService::describe(files) << "\n";
        if (outcome.resumed)
            out << "Resumed the interrupted import\n";
        out << "导入的文件已保存到：" << escapedForLine(outcome.destination) << "\n";
        printSkipped(out, files);
        if (outcome.failedCount > 0)
            out << "Failed: " << outcome.failedCount << "\n";
    }
    out.flush();
    for (const cards::FileFailure& failure : outcome.failures)
        line.itemFailed(failure.source, failure.error);
    return outcome.failedCount > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
