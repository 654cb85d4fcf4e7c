// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli board FOLDER [--columns N] [--paper a4|letter] [--pdf] [--json]: the folder's board index sheets
// (contact sheets) into its `_index` folder.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/ProgressBar.h"

#include "browse/state/FileSystemService.h"
#include "vision/BoardSheetService.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

int runBoard(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("board"),
        QStringLiteral("Print FOLDER as board index sheets: pages of thumbnails with each picture's "
                       "name, colour tags, stars, pick or reject and category mark, under a header "
                       "with the folder's name, dates and counts; JPEG pages (and with --pdf one "
                       "PDF) at 300 dpi in FOLDER/_index."));
    line.addPositional(QStringLiteral("FOLDER"), QStringLiteral("The folder to print."),
                       QStringLiteral("[FOLDER]"));
    line.addJsonOption();
    line.addOption({QStringLiteral("columns"),
                    QStringLiteral("Thumbnails per row, %1 to %2 (default %3).")
                        .arg(vision::BoardSheetLayout::kMinColumns)
                        .arg(vision::BoardSheetLayout::kMaxColumns)
                        .arg(vision::BoardSheetLayout::kDefaultColumns),
                    QStringLiteral("N")});
    line.addOption(
        {QStringLiteral("paper"), QStringLiteral("a4 (default) or letter."), QStringLiteral("SIZE")});
    line.addOption({QStringLiteral("pdf"), QStringLiteral("Also write one PDF of every page.")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    vision::BoardSheetOptions options;
    if (line.isSet(QStringLiteral("columns"))) {
        bool ok = false;
        options.columns = line.value(QStringLiteral("columns")).toInt(&ok);
        if (!ok || options.columns < vision::BoardSheetLayout::kMinColumns ||
            options.columns > vision::BoardSheetLayout::kMaxColumns)
            return line.usageError(QStringLiteral("--columns takes a number from %1 to %2")
                                       .arg(vision::BoardSheetLayout::kMinColumns)
                                       .arg(vision::BoardSheetLayout::kMaxColumns));
    }
    if (line.isSet(QStringLiteral("paper"))) {
        const auto paper = vision::BoardSheetLayout::paperNamed(line.value(QStringLiteral("paper")));
        if (!paper)
            return line.usageError(QStringLiteral("--paper is a4 or letter"));
        options.paper = *paper;
    }
    options.pdf = line.isSet(QStringLiteral("pdf"));
    const auto checked = line.folderArgument(QStringLiteral("board takes one folder"));
    if (!checked)
        return exitUsage;
    const QString folder = QDir(*checked).absolutePath();
    const QStringList names = browse::FileSystemService::shared().loadImageFileNames(folder);
    if (names.isEmpty())
        return line.fail(QStringLiteral("%1 holds no pictures; no sheet written").arg(escapedForLine(folder)),
                         exitUsage);

    ProgressBar progress(QStringLiteral("Sheets"), names.size() * 2);
    options.progress = [&progress](int, int) { progress.advance(); };
    const vision::BoardSheetResult result = vision::BoardSheetService().run(folder, names, options);
    progress.finish();
    if (result.indexFolderRefused)
        return line.fail(
            QStringLiteral("cannot write into %1/_index (a file named _index is in the way, or the "
                           "folder is read-only); nothing was written")
                .arg(escapedForLine(folder)),
            exitUsage);
    if (!result.error.isEmpty())
        return line.fail(
            QStringLiteral("the sheets could not be written (%1); nothing was left behind").arg(result.error),
            exitPartial);
    QTextStream& out = standardOutput();
    if (line.json()) {
        out << QJsonDocument(
                   QJsonObject{{QStringLiteral("pages"), QJsonArray::fromStringList(result.pagePaths)},
                               {QStringLiteral("pdf"),
                                result.pdfPath.isEmpty() ? QJsonValue() : QJsonValue(result.pdfPath)},
                               {QStringLiteral("pictures"), result.pictures},
                               {QStringLiteral("undecodable"), result.undecodable}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
    } else {
        for (const QString& page : result.pagePaths)
            out << escapedForLine(page) << "\n";
        if (!result.pdfPath.isEmpty())
            out << escapedForLine(result.pdfPath) << "\n";
        out << result.pictures << (result.pictures == 1 ? " picture on " : " pictures on ")
            << result.pagePaths.size() << (result.pagePaths.size() == 1 ? " page" : " pages");
        if (result.undecodable > 0)
            out << ", " << result.undecodable << " could not be decoded (shown as such)";
        out << "\n";
    }
    out.flush();
    return result.undecodable > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
