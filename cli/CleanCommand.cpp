// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli clean --jpg DIR --raw DIR [--yes]: the RAW files whose JPG was not kept, shown, or sent to the Trash.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/PairingArguments.h"
#include "cli/ProgressBar.h"

#include "cards/ByteCountFormatter.h"
#include "cards/CleanOffer.h"
#include "cards/PairingAnalyzer.h"
#include "cards/PairingCleaner.h"
#include "platform/FreedesktopTrash.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

namespace {

using cards::ByteCountFormatter;

void printAnalysis(QTextStream& out, const cards::AnalysisResults& results)
{
    const auto line = [&out](const char* label, qsizetype count, qint64 size) {
        out << QString::fromLatin1(label).leftJustified(16) << count << " (" << ByteCountFormatter::string(size) << ")\n";
    };
    line("JPG files:", results.jpgFiles.size(), results.jpgTotalSize);
    line("RAW files:", results.rawFiles.size(), results.rawTotalSize);
    out << QStringLiteral("Matched JPG:").leftJustified(16) << results.matchedJpgCount << "\n";
    line("Matched RAW:", results.matchedFiles.size(), results.matchedTotalSize);
    line("Unmatched RAW:", results.unmatchedFiles.size(), results.unmatchedTotalSize);
}

QJsonObject analysisJson(const cards::AnalysisResults& results, const cards::CleanOffer& offer)
{
    return {{QStringLiteral("jpgFiles"), results.jpgFiles.size()},
            {QStringLiteral("rawFiles"), results.rawFiles.size()},
            {QStringLiteral("matchedJpgFiles"), results.matchedJpgCount},
            {QStringLiteral("matchedRawFiles"), results.matchedFiles.size()},
            {QStringLiteral("matchedTotalSize"), results.matchedTotalSize},
            {QStringLiteral("unmatchedTotalSize"), results.unmatchedTotalSize},
            {QStringLiteral("unmatchedFiles"), QJsonArray::fromStringList(results.unmatchedFiles)},
            {QStringLiteral("canClean"), offer.canClean()},
            {QStringLiteral("message"), offer.message}};
}

} // namespace

int runClean(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("clean"),
                     QStringLiteral("Pair the RAW files of --raw with the JPG files of --jpg by name. Without --yes, print "
                                    "what the clean would move to the Trash and change nothing; with --yes, move every "
                                    "RAW file without a JPG to the Trash. At least 4 matched files are required."));
    addPairingOptions(line);
    line.addOption({QStringLiteral("yes"), QStringLiteral("Really move the unmatched RAW files to the Trash.")});
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    if (!line.positional(0)->isEmpty())
        return line.usageError(QStringLiteral("clean takes no positional arguments"));
    const auto folders = pairingFolders(line);
    if (!folders)
        return exitUsage;

    const cards::AnalysisResults results = cards::PairingAnalyzer::analyze(folders->jpg, folders->raw);
    const cards::CleanOffer offer = cards::CleanOffer::decide(results);
    QTextStream& out = standardOutput();
    const bool apply = line.isSet(QStringLiteral("yes"));
    if (!apply || !offer.canClean()) {
        if (line.json()) {
            out << QJsonDocument(analysisJson(results, offer)).toJson(QJsonDocument::Compact) << "\n";
        } else {
            printAnalysis(out, results);
            if (!offer.canClean()) {
                out << offer.message << "\n";
            } else {
                out << "Would move " << offer.fileCount << " RAW files (" << ByteCountFormatter::string(offer.totalSize)
                    << ") to the Trash (run again with --yes):\n";
                for (const QString& path : results.unmatchedFiles)
                    out << escapedForLine(path) << "\n";
            }
        }
        out.flush();
        // Asked to clean but the safety rule holds it back: nothing was done.
        return apply && offer.kind != cards::CleanOffer::Kind::nothingToClean ? exitUsage : exitOk;
    }

    ProgressBar bar(QStringLiteral("Trash"), results.unmatchedFiles.size());
    const cards::CleanResult result =
        cards::PairingCleaner(platform::FreedesktopTrash::shared()).clean(results.unmatchedFiles, [&bar](double) {
            bar.advance();
        });
    bar.finish();
    for (const cards::FileFailure& failure : result.failures)
        line.itemFailed(failure.source, failure.error);
    if (line.json()) {
        out << QJsonDocument(QJsonObject{{QStringLiteral("cleaned"), result.cleanedFilesCount},
                                         {QStringLiteral("failed"), result.failedFilesCount},
                                         {QStringLiteral("freedSpace"), result.freedSpace},
                                         {QStringLiteral("message"), result.message}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
    } else {
        out << result.message << "\n";
        if (result.failedFilesCount > 0)
            out << "Moved " << result.cleanedFilesCount << ", failed " << result.failedFilesCount << "\n";
    }
    out.flush();
    return result.failedFilesCount > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
