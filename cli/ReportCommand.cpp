// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli report FOLDER: the shooting report of a folder (or a folder tree), as text, JSON, HTML or PDF.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/ProgressBar.h"

#include "platform/XattrTagStore.h"
#include "report/ReportBuilder.h"
#include "report/ReportExport.h"
#include "report/ReportFacts.h"
#include "report/ReportJson.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

namespace lumaro::cli {

namespace {

// nullopt when the report may be written to `path`: a new file in an existing folder, or a report this
// command wrote before. Anything else is someone's file and is never replaced.
std::optional<QString> problemWithOutput(const QString& path)
{
    const QFileInfo info(path);
    if (!info.absoluteDir().exists())
        return QStringLiteral("%1: no such folder to write into").arg(escapedForLine(path));
    if (info.isDir())
        return QStringLiteral("%1: is a folder").arg(escapedForLine(path));
    if (info.exists() && !report::ReportExport::isReportFile(path))
        return QStringLiteral("%1: exists and is not a Lumaro report; not replaced")
            .arg(escapedForLine(path));
    return std::nullopt;
}

void printFacts(QTextStream& out, const report::ShootingReport& shoot)
{
    QString section;
    for (const report::ReportFact& fact : report::reportFacts(shoot)) {
        if (fact.section != section) {
            section = fact.section;
            out << section << "\n";
        }
        out << "  " << escapedForLine(fact.label) << ": " << escapedForLine(fact.value) << "\n";
    }
}

} // namespace

int runReport(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("report"),
        QStringLiteral("The shooting report of FOLDER from its pictures' EXIF: exposures (a JPEG and a RAW "
                       "of one shot count once), pace, bursts, orientation, lenses, settings, culling."));
    line.addPositional(QStringLiteral("FOLDER"), QStringLiteral("The folder of the shoot."));
    line.addJsonOption();
    line.addOption({QStringLiteral("deep"), QStringLiteral("Include every folder below FOLDER.")});
    line.addOption({QStringLiteral("html"),
                    QStringLiteral("Also write the report as a self-contained HTML page."),
                    QStringLiteral("FILE")});
    line.addOption(
        {QStringLiteral("pdf"), QStringLiteral("Also write the report as a PDF."), QStringLiteral("FILE")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto folder = line.folderArgument(QStringLiteral("report takes one folder"));
    if (!folder)
        return exitUsage;
    const QString html = line.value(QStringLiteral("html"));
    const QString pdf = line.value(QStringLiteral("pdf"));
    for (const QString& output : {html, pdf}) {
        if (const auto problem = output.isEmpty() ? std::nullopt : problemWithOutput(output))
            return line.fail(*problem, exitUsage);
    }

    const bool deep = line.isSet(QStringLiteral("deep"));
    std::optional<ProgressBar> progress;
    qsizetype shown = 0;
    QString error;
    const auto scan = report::ShootScanner(platform::XattrTagStore::shared())
                          .scan(
                              *folder, deep, nullptr,
                              [&](qsizetype done, qsizetype total) {
                                  if (!progress)
                                      progress.emplace(QStringLiteral("report"), total);
                                  progress->advance(done - shown);
                                  shown = done;
                              },
                              &error);
    if (progress)
        progress->finish();
    if (!scan)
        return line.fail(escapedForLine(*folder) + QStringLiteral(": ") + error, exitUsage);
    for (const QString& failure : scan->failures)
        standardError() << "lumaro-cli report: " << escapedForLine(failure) << "\n";
    const report::ShootingReport shoot =
        report::ReportBuilder::build(QFileInfo(*folder).absoluteFilePath(), deep, *scan);

    QTextStream& out = standardOutput();
    if (line.json())
        out << QJsonDocument(report::reportToJson(shoot)).toJson(QJsonDocument::Indented);
    else
        printFacts(out, shoot);
    out.flush();

    int code = scan->failures.isEmpty() ? exitOk : exitPartial;
    const auto write = [&](const QString& path, auto writer) {
        if (path.isEmpty())
            return;
        if (const auto problem = writer(shoot, path)) {
            line.fail(escapedForLine(path) + QStringLiteral(": ") + *problem, exitPartial);
            code = exitPartial;
        }
    };
    write(html, &report::ReportExport::writeHtml);
    write(pdf, &report::ReportExport::writePdf);
    standardError().flush();
    return code;
}

} // namespace lumaro::cli
