// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli pick --jpg DIR --raw DIR: copies the RAW files that have a JPG into RAW_PICK beside the RAW
// folder.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/PairingArguments.h"
#include "cli/ProgressBar.h"

#include "cards/ByteCountFormatter.h"
#include "cards/PairingAnalyzer.h"
#include "cards/RawPicker.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

int runPick(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("pick"),
        QStringLiteral("Copy every RAW file of --raw that has a JPG of the same name in --jpg into the "
                       "folder RAW_PICK beside the RAW folder. Same-named files already in RAW_PICK are "
                       "replaced; other files there are kept."));
    addPairingOptions(line);
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    if (!line.positional(0)->isEmpty())
        return line.usageError(QStringLiteral("pick takes no positional arguments"));
    const auto folders = pairingFolders(line);
    if (!folders)
        return exitUsage;

    const cards::AnalysisResults results = cards::PairingAnalyzer::analyze(folders->jpg, folders->raw);
    QTextStream& out = standardOutput();
    if (results.matchedFiles.isEmpty()) {
        if (line.json())
            out << QJsonDocument(QJsonObject{{QStringLiteral("pickFolder"), QJsonValue()},
                                             {QStringLiteral("copied"), 0},
                                             {QStringLiteral("failed"), 0},
                                             {QStringLiteral("matchedTotalSize"), 0},
                                             {QStringLiteral("message"), QStringLiteral("nothing to pick")}})
                       .toJson(QJsonDocument::Compact)
                << "\n";
        else
            out << "No RAW file has a JPG of the same name; nothing to pick.\n";
        out.flush();
        return exitOk;
    }
    ProgressBar bar(QStringLiteral("Pick"), results.matchedFiles.size());
    const cards::PickResult result =
        cards::RawPicker::pick(results.matchedFiles, folders->raw, [&bar](double) { bar.advance(); });
    bar.finish();
    for (const cards::FileFailure& failure : result.failures)
        line.itemFailed(failure.source, failure.error);
    if (line.json()) {
        out << QJsonDocument(QJsonObject{{QStringLiteral("pickFolder"), result.pickFolder},
                                         {QStringLiteral("copied"), result.copiedCount},
                                         {QStringLiteral("failed"), result.failedCount},
                                         {QStringLiteral("matchedTotalSize"), results.matchedTotalSize},
                                         {QStringLiteral("message"), result.errorMessage}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
    } else if (!result.errorMessage.isEmpty()) {
        out << result.errorMessage << "\n";
    } else {
        out << result.copiedCount
            << " 个  ·  复制体量: " << cards::ByteCountFormatter::string(results.matchedTotalSize) << "\n"
            << "RAW_PICK: " << escapedForLine(result.pickFolder) << "\n";
        if (result.failedCount > 0)
            out << "Failed: " << result.failedCount << "\n";
    }
    out.flush();
    return result.errorMessage.isEmpty() && result.failedCount == 0 ? exitOk : exitPartial;
}

} // namespace lumaro::cli
