// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli index FOLDER: analyses the folder's pictures and writes the vision index and summary files.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/FolderArgument.h"
#include "cli/ProgressBar.h"

#include "browse/state/FileSystemService.h"
#include "platform/Log.h"
#include "vision/VisionIndexService.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

#include <mutex>

namespace lumaro::cli {

namespace {

// "12 pictures: MARK_PEOPLE 5, MARK_OUTDOOR 4, …", most frequent first.
QString markSummary(const vision::VisionIndexRunResult& run)
{
    QMap<QString, int> counts;
    for (const vision::VisionRecognitionResult& r : run.results)
        ++counts[r.classificationMark];
    QList<std::pair<QString, int>> ordered(counts.keyValueBegin(), counts.keyValueEnd());
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    QStringList parts;
    for (const auto& [mark, count] : ordered)
        parts << mark + QLatin1Char(' ') + QString::number(count);
    QString line = QString::number(run.results.size()) + QStringLiteral(" pictures");
    if (!parts.isEmpty())
        line += QStringLiteral(": ") + parts.join(QStringLiteral(", "));
    if (run.failed > 0)
        line += QStringLiteral(" (") + QString::number(run.failed) + QStringLiteral(" failed)");
    return line;
}

QString perfLine(const vision::VisionIndexRunResult& run, double wallSeconds)
{
    const auto seconds = [](double value) { return QString::number(value, 'f', 3); };
    return QStringLiteral(
               "PERF-VISION_INDEX: %1 张, 总计 %2 s, 解码 %3 s, 分类 %4 s, 物体 %5 s, 人物 %6 s, 人脸 %7 s, "
               "插画 %8 s, 文字 %9 s (各阶段为所有线程之和)")
        .arg(QString::number(run.total), seconds(wallSeconds), seconds(run.decodeSeconds),
             seconds(run.classificationSeconds), seconds(run.objectsSeconds), seconds(run.peopleSeconds),
             seconds(run.facesSeconds), seconds(run.drawingSeconds), seconds(run.textSeconds));
}

} // namespace

int runIndex(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("index"),
        QStringLiteral("Analyse the pictures of FOLDER (scene classification, faces, text) and write "
                       "_index/vision_index_*.json and _index/vision_summary_*.json."));
    line.addPositional(QStringLiteral("FOLDER"), QStringLiteral("The folder to analyse."));
    line.addJsonOption();
    line.addOption({QStringLiteral("jobs"),
                    QStringLiteral("Analyse N pictures at a time (default: by picture and "
                                   "processor count)."),
                    QStringLiteral("N")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto checked = line.folderArgument(QStringLiteral("index takes one folder"));
    if (!checked)
        return exitUsage;
    int jobs = 0;
    if (line.isSet(QStringLiteral("jobs"))) {
        const auto asked = line.number(QStringLiteral("jobs"), 1, 64);
        if (!asked)
            return line.usageError(QStringLiteral("--jobs takes a number from 1 to 64"));
        jobs = *asked;
    }
    const QString folder = QDir(*checked).absolutePath();

    const QStringList names = browse::FileSystemService::shared().loadImageFileNames(folder);
    ProgressBar progress(QStringLiteral("Analysing"), names.size());
    vision::VisionIndexRunOptions options;
    options.jobs = jobs;
    // The service calls this from its workers one at a time, so the bar is never drawn by two threads at
    // once.
    options.onPictureFinished = [&progress](const vision::VisionRecognitionResult*, int, int) {
        progress.advance();
    };
    QElapsedTimer wall;
    wall.start();
    const vision::VisionIndexRunResult run = vision::VisionIndexService::shared().run(folder, names, options);
    progress.finish();
    platform::Log::raw(perfLine(run, double(wall.nsecsElapsed()) / 1e9));

    if (run.indexFolderRefused)
        return line.fail(
            QStringLiteral("cannot write into %1 (a file named _index is in the way, or the folder is "
                           "read-only); nothing was written")
                .arg(QDir(folder).filePath(QStringLiteral("_index"))),
            exitUsage);
    for (const vision::VisionIndexFailure& failure : run.failures)
        line.itemFailed(failure.fileName, failure.reason);
    QTextStream& out = standardOutput();
    if (line.json()) {
        QJsonObject marks;
        for (const vision::VisionRecognitionResult& r : run.results)
            marks.insert(r.fileName, r.classificationMark);
        QJsonArray failures;
        for (const vision::VisionIndexFailure& failure : run.failures)
            failures.append(QJsonObject{{QStringLiteral("file"), failure.fileName},
                                        {QStringLiteral("error"), failure.reason}});
        out << QJsonDocument(QJsonObject{{QStringLiteral("index"), run.indexPath},
                                         {QStringLiteral("summary"), run.summaryPath},
                                         {QStringLiteral("analysed"), int(run.results.size())},
                                         {QStringLiteral("failed"), run.failed},
                                         {QStringLiteral("failures"), failures},
                                         {QStringLiteral("marks"), marks}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
    } else {
        if (!run.indexPath.isEmpty())
            out << escapedForLine(run.indexPath) << "\n";
        if (!run.summaryPath.isEmpty())
            out << escapedForLine(run.summaryPath) << "\n";
        out << markSummary(run) << "\n";
    }
    out.flush();
    if (run.indexPath.isEmpty())
        return line.fail(QStringLiteral("the index file could not be written"), exitPartial);
    return run.failed > 0 || run.summaryPath.isEmpty() ? exitPartial : exitOk;
}

} // namespace lumaro::cli
