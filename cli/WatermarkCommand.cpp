// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli watermark FOLDER [--to DIR] [--copy] [--dry-run] [--all] [--json], and --undo LOG: reads the
// poster identifiers stamped on a folder's pictures and sorts the pictures into one folder per identifier.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/FolderArgument.h"
#include "cli/ProgressBar.h"

#include "browse/state/FileSystemService.h"
#include "vision/WatermarkService.h"
#include "vision/WatermarkSorter.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace lumaro::cli {

namespace {

QJsonObject toJson(const vision::WatermarkResult& r)
{
    QJsonObject o{{QStringLiteral("fileName"), r.fileName},
                  {QStringLiteral("identifier"), r.isIdentified() ? QJsonValue(r.identifier) : QJsonValue()},
                  {QStringLiteral("kind"), r.isIdentified() ? QJsonValue(r.kind) : QJsonValue()},
                  {QStringLiteral("text"), r.isIdentified() ? QJsonValue(r.text) : QJsonValue()}};
    if (!r.error.isEmpty())
        o.insert(QStringLiteral("error"), r.error);
    return o;
}

QString summary(const vision::WatermarkRunResult& run)
{
    QSet<QString> posters;
    for (const vision::WatermarkResult& r : run.results)
        if (r.isIdentified())
            posters.insert(r.identifier);
    QString line = QStringLiteral("%1 pictures read: %2 with an identifier (%3 posters), %4 without")
                       .arg(run.results.size())
                       .arg(run.identified())
                       .arg(posters.size())
                       .arg(run.results.size() - run.identified());
    if (run.failed > 0)
        line += QStringLiteral(", %1 unreadable").arg(run.failed);
    return line;
}

int undo(const CommandLine& line, const QString& logPath)
{
    const vision::WatermarkUndoReport report = vision::WatermarkSorter().undo(logPath);
    if (!report.error.isEmpty())
        return line.fail(QStringLiteral("%1: %2").arg(logPath, report.error), exitUsage);
    QTextStream& out = standardOutput();
    if (line.json()) {
        out << QJsonDocument(
                   QJsonObject{{QStringLiteral("restored"), report.restored},
                               {QStringLiteral("alreadyBack"), report.alreadyBack},
                               {QStringLiteral("conflicts"), QJsonArray::fromStringList(report.conflicts)}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
    } else {
        for (const QString& conflict : report.conflicts)
            out << "kept: " << escapedForLine(conflict) << "\n";
        out << report.restored << " pictures put back, " << report.alreadyBack << " already in place\n";
    }
    out.flush();
    return report.conflicts.isEmpty() ? exitOk : exitPartial;
}

void printSort(const vision::WatermarkSortReport& sort, const QString& target, bool copy, bool dryRun,
               QTextStream& out)
{
    const QString verb =
        dryRun ? (copy ? QStringLiteral("would copy: ") : QStringLiteral("would move: ")) : QString();
    for (const vision::WatermarkMove& move : sort.moved)
        out << verb << escapedForLine(move.fileName) << " -> "
            << escapedForLine(QDir(target).filePath(move.folder + QLatin1Char('/') + move.fileName)) << "\n";
    for (const QString& skipped : sort.skipped)
        out << "skipped (name taken): " << escapedForLine(skipped) << "\n";
    for (const QString& failure : sort.failures)
        out << "failed: " << escapedForLine(failure) << "\n";
    if (!sort.logPath.isEmpty())
        out << "log: " << escapedForLine(sort.logPath) << "\n";
}

QJsonObject sortJson(const vision::WatermarkSortReport& sort, const QString& target)
{
    QJsonArray moves;
    for (const vision::WatermarkMove& move : sort.moved)
        moves.append(QJsonObject{
            {QStringLiteral("fileName"), move.fileName},
            {QStringLiteral("identifier"), move.identifier},
            {QStringLiteral("to"), QDir(target).filePath(move.folder + QLatin1Char('/') + move.fileName)}});
    return {{QStringLiteral("moves"), moves},
            {QStringLiteral("left"), QJsonArray::fromStringList(sort.unidentified)},
            {QStringLiteral("skipped"), QJsonArray::fromStringList(sort.skipped)},
            {QStringLiteral("failures"), QJsonArray::fromStringList(sort.failures)},
            {QStringLiteral("log"), sort.logPath.isEmpty() ? QJsonValue() : QJsonValue(sort.logPath)}};
}

} // namespace

int runWatermark(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("watermark"),
        QStringLiteral("Read the poster identifier (\"@name\", \"ID: 12345678\", \"号：…\") stamped on the "
                       "people pictures of FOLDER and write _index/watermark_index_*.json; with --to, "
                       "sort the pictures into one folder per identifier under DIR. Pictures without a "
                       "readable identifier stay where they are."));
    line.addPositional(QStringLiteral("FOLDER"), QStringLiteral("The folder of saved pictures."),
                       QStringLiteral("[FOLDER]"));
    line.addJsonOption();
    line.addOption(
        {QStringLiteral("all"), QStringLiteral("Read every picture, not only the people pictures of the "
                                               "folder's vision index.")});
    line.addOption({QStringLiteral("to"),
                    QStringLiteral("Sort into per-identifier folders under DIR (FOLDER itself "
                                   "may be given)."),
                    QStringLiteral("DIR")});
    line.addOption({QStringLiteral("copy"), QStringLiteral("Copy instead of moving (with --to).")});
    line.addOption(
        {QStringLiteral("dry-run"), QStringLiteral("List every move without doing it (with --to).")});
    line.addOption({QStringLiteral("undo"),
                    QStringLiteral("Put back the pictures of a sort from its log "
                                   "(_index/watermark_moves_*.json)."),
                    QStringLiteral("LOG")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    if (line.isSet(QStringLiteral("undo"))) {
        const auto extra = line.positional(0);
        if (!extra || !extra->isEmpty())
            return line.usageError(QStringLiteral("--undo takes the log file alone, no folder"));
        return undo(line, line.value(QStringLiteral("undo")));
    }
    const bool sorting = line.isSet(QStringLiteral("to"));
    if (!sorting && (line.isSet(QStringLiteral("copy")) || line.isSet(QStringLiteral("dry-run"))))
        return line.usageError(QStringLiteral("--copy and --dry-run go with --to DIR"));
    const auto checked = line.folderArgument(QStringLiteral("watermark takes one folder"));
    if (!checked)
        return exitUsage;
    const QString folder = QDir(*checked).absolutePath();
    const QString target = sorting ? QDir(line.value(QStringLiteral("to"))).absolutePath() : QString();
    if (sorting && QFileInfo(target).exists() && !QFileInfo(target).isDir())
        return line.fail(QStringLiteral("%1 is a file, not a folder").arg(target), exitUsage);

    const QStringList names = browse::FileSystemService::shared().loadImageFileNames(folder);
    ProgressBar progress(QStringLiteral("Reading"), names.size());
    vision::WatermarkRunOptions options;
    options.allPictures = line.isSet(QStringLiteral("all"));
    options.progress = [&progress](int, int) { progress.advance(); };
    const vision::WatermarkRunResult run = vision::WatermarkService().run(folder, names, options);
    progress.finish();
    if (run.noVisionIndex)
        return line.fail(
            QStringLiteral("no vision index in %1/_index: run `lumaro-cli index %1` first to find the "
                           "people pictures, or read every picture with --all")
                .arg(folder),
            exitUsage);
    if (run.indexFolderRefused)
        return line.fail(
            QStringLiteral("cannot write into %1/_index (a file named _index is in the way, or the "
                           "folder is read-only); nothing was done")
                .arg(folder),
            exitUsage);
    if (run.noReader)
        return line.fail(QStringLiteral("no text recognition installed (PP-OCR models or tesseract-ocr): "
                                        "see scripts/fetch-models.sh"),
                         exitPartial);

    vision::WatermarkSortReport sort;
    vision::WatermarkSortOptions sortOptions;
    if (sorting) {
        sortOptions.targetFolder = target;
        sortOptions.copy = line.isSet(QStringLiteral("copy"));
        sortOptions.dryRun = line.isSet(QStringLiteral("dry-run"));
        sort = vision::WatermarkSorter().sort(folder, run.results, sortOptions);
        if (sort.logRefused)
            return line.fail(
                QStringLiteral("the move log could not be written into %1/_index; nothing was moved")
                    .arg(folder),
                exitUsage);
    }
    QTextStream& out = standardOutput();
    if (line.json()) {
        QJsonArray pictures;
        for (const vision::WatermarkResult& r : run.results)
            pictures.append(toJson(r));
        QJsonObject root{
            {QStringLiteral("index"), run.indexPath.isEmpty() ? QJsonValue() : QJsonValue(run.indexPath)},
            {QStringLiteral("read"), int(run.results.size())},
            {QStringLiteral("identified"), run.identified()},
            {QStringLiteral("failed"), run.failed},
            {QStringLiteral("pictures"), pictures}};
        if (sorting) {
            root.insert(QStringLiteral("sort"), sortJson(sort, target));
            root.insert(QStringLiteral("dryRun"), sortOptions.dryRun);
        }
        out << QJsonDocument(root).toJson(QJsonDocument::Compact) << "\n";
    } else {
        for (const vision::WatermarkResult& r : run.results)
            out << escapedForLine(r.fileName) << "\t"
                << (r.isIdentified()
                        ? escapedForLine(r.identifier) + QStringLiteral("\t") + escapedForLine(r.text)
                        : QStringLiteral("-"))
                << "\n";
        if (sorting)
            printSort(sort, target, sortOptions.copy, sortOptions.dryRun, out);
        if (!run.indexPath.isEmpty())
            out << "results: " << escapedForLine(run.indexPath) << "\n";
        out << summary(run) << "\n";
    }
    out.flush();
    const bool partly =
        run.failed > 0 || run.indexPath.isEmpty() || !sort.skipped.isEmpty() || !sort.failures.isEmpty();
    return partly ? exitPartial : exitOk;
}

} // namespace lumaro::cli
