// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli pose IMAGE…: each person's level-1 and level-2 pose verdicts, with the condition and reason that
// decided them and the action they stand for.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/FolderArgument.h"
#include "cli/ProgressBar.h"

#include "browse/state/FileSystemService.h"
#include "platform/Log.h"
#include "platform/vision/AnalysisImage.h"
#include "pose/PicturePoseAnalyzer.h"
#include "pose/PoseIndexFile.h"
#include "pose/PoseTileExporter.h"
#include "vision/IndexFolder.h"

#include <QCommandLineOption>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace lumaro::cli {

namespace {

QJsonValue shotJson(const std::optional<pose::ShotSize>& shot)
{
    return shot ? QJsonValue(rawValue(*shot)) : QJsonValue();
}

QString shotText(const std::optional<pose::ShotSize>& shot)
{
    return shot ? displayName(*shot) + u' ' + rawValue(*shot) : QStringLiteral("-");
}

void printPerson(QTextStream& out, int number, const pose::AnalysedPerson& analysed)
{
    const pose::PersonPose& person = analysed.pose;
    const pose::PoseValueLevel1Result& first = person.level1;
    out << "  person " << number << ": " << person.verdict() << "  "
        << pose::ruleDefinition(person.action).displayName << "  shot " << shotText(analysed.shotSize)
        << "\n";
    out << "    level 1: " << rawValue(first.pose);
    if (first.matchedSide)
        out << "  side " << rawValue(*first.matchedSide);
    if (first.matchedDirection)
        out << "  " << rawValue(first.matchedDirection->relation) << "  " << first.matchedDirection->reason;
    if (first.reason)
        out << "  " << *first.reason;
    out << "\n";
    if (person.level2) {
        out << "    level 2: " << rawValue(person.level2->pose) << "  " << person.level2->matchedCondition
            << "  " << person.level2->reason << "\n";
    } else {
        out << "    level 2: none (level 1 stands)\n";
    }
}

} // namespace

int runPose(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("pose"),
        QStringLiteral("Name the pose of every person in each picture IMAGE (level 1 and level 2), with "
                       "the condition and reason that decided it. Vision tags are read from the "
                       "folder's _index when there is one. Given a FOLDER instead, every picture of it is "
                       "analysed and the run is written to FOLDER/_index/pose_index_*.json."));
    line.addPositional(QStringLiteral("IMAGE"), QStringLiteral("The pictures to analyse, or one folder."),
                       QStringLiteral("IMAGE...|FOLDER"));
    line.addJsonOption();
    line.addOption(
        QCommandLineOption(QStringLiteral("sort"),
                           QStringLiteral("List the pictures by KEY instead of as given; \"shot\": from "
                                          "the closest framing to the widest, pictures with nobody last."),
                           QStringLiteral("KEY")));
    line.addOption(QCommandLineOption(
        QStringLiteral("tiles"),
        QStringLiteral(
            "Also write each person as a tile (cut out with a margin, joints and deciding segments "
            "drawn, pose and action as caption) into DIR, plus one contact sheet of every tile; "
            "files already in DIR are never replaced."),
        QStringLiteral("DIR")));
    if (const auto stop = line.parse(arguments))
        return *stop;
    std::optional<pose::PoseTileExporter> tiles;
    QString tilesDir;
    if (line.isSet(QStringLiteral("tiles"))) {
        const QString dir = line.value(QStringLiteral("tiles"));
        if (const auto problem = problemWithOutputFolder(dir))
            return line.fail(
                QStringLiteral("--tiles %1: %2; nothing was analysed").arg(escapedForLine(dir), *problem),
                exitUsage);
        tilesDir = QDir(dir).absolutePath();
        tiles.emplace(tilesDir);
    }
    const bool byShot = line.isSet(QStringLiteral("sort"));
    if (byShot && line.value(QStringLiteral("sort")) != QStringLiteral("shot"))
        return line.fail(QStringLiteral("--sort takes \"shot\", not \"%1\"")
                             .arg(escapedForLine(line.value(QStringLiteral("sort")))),
                         exitUsage);
    const auto named = line.positional(1);
    if (!named)
        return exitUsage;
    // A folder run: every picture of the folder, in browsing order, and the run kept in its _index.
    std::optional<QString> folder;
    if (named->size() == 1 && QFileInfo(named->front()).isDir())
        folder = QDir(named->front()).absolutePath();
    std::optional<QStringList> files = named;
    if (folder) {
        if (vision::IndexFolder::isBlocked(*folder, QString::fromLatin1(pose::PoseIndexFile::kLogTag)))
            return line.fail(
                QStringLiteral("cannot write into %1 (a file named _index is in the way, or the folder is "
                               "read-only); nothing was analysed")
                    .arg(escapedForLine(vision::IndexFolder::pathFor(*folder))),
                exitUsage);
        files = QStringList();
        for (const QString& name : browse::FileSystemService::shared().loadImageFileNames(*folder))
            files->append(QDir(*folder).filePath(name));
    }
    for (const QString& file : *named) {
        const QFileInfo info(file);
        if (info.isDir() && !folder)
            return line.fail(QStringLiteral("%1: is a folder; give one folder alone, or pictures")
                                 .arg(escapedForLine(file)),
                             exitUsage);
        if (!info.isFile() && !folder)
            return line.fail(QStringLiteral("%1: no such file").arg(escapedForLine(file)), exitUsage);
    }

    pose::PicturePoseAnalyzer analyzer;
    if (!analyzer.hasModel())
        return line.fail(analyzer.modelProblem(), exitPartial);

    QTextStream& out = standardOutput();
    // Each picture's output with its framing's rank, so the list can be sorted by shot size when asked.
    std::vector<std::pair<int, QJsonObject>> pictures;
    std::vector<std::pair<int, QString>> texts;
    std::vector<pose::PicturePoseAnalysis> analysed; // for the folder's index
    const QDateTime startedAt = QDateTime::currentDateTime();
    int failed = 0;
    ProgressBar progress(QStringLiteral("pose"), files->size());
    for (const QString& file : *files) {
        const auto outcome = analyzer.analyse(file);
        progress.advance();
        if (const auto* failure = std::get_if<pose::PicturePoseFailure>(&outcome)) {
            ++failed;
            standardError() << "lumaro-cli pose: " << escapedForLine(file) << ": " << failure->message
                            << "\n";
            continue;
        }
        const auto& analysis = std::get<pose::PicturePoseAnalysis>(outcome);
        if (folder)
            analysed.push_back(analysis);
        if (tiles && !analysis.people.empty()) {
            QString error;
            const auto picture =
                platform::AnalysisImageReader::read(file, pose::PoseTileExporter::kSourceSide, &error);
            if (picture)
                tiles->addPicture(picture->image, analysis);
            else
                line.itemFailed(file, error);
        }
        platform::Log::raw(
            QStringLiteral(
                "PERF-POSE: %1 decode %2 ms, detect %3 ms (whole %4 ms, tiles %5 ms, %6 runs), faces %7 ms, "
                "objects %8 ms (%9 runs), rules %10 ms")
                .arg(escapedForLine(QFileInfo(file).fileName()))
                .arg(analysis.decodeMs, 0, 'f', 3)
                .arg(analysis.detectMs, 0, 'f', 3)
                .arg(analysis.wholePictureMs, 0, 'f', 3)
                .arg(analysis.tilesMs, 0, 'f', 3)
                .arg(analysis.passes)
                .arg(analysis.facesMs, 0, 'f', 3)
                .arg(analysis.objectsMs, 0, 'f', 3)
                .arg(analysis.objectLooks)
                .arg(analysis.rulesMs, 0, 'f', 3));
        const int rank = analysis.shotSize ? int(*analysis.shotSize) : int(pose::ShotSize::long_) + 1;
        if (line.json()) {
            QJsonArray people;
            for (const pose::AnalysedPerson& person : analysis.people)
                people.append(pose::PoseIndexFile::personJson(person));
            QJsonObject picture{{QStringLiteral("file"), file},
                                {QStringLiteral("shotSize"), shotJson(analysis.shotSize)},
                                {QStringLiteral("people"), people}};
            picture.insert(QStringLiteral("visionTags"),
                           analysis.visionTags ? QJsonValue(QJsonArray::fromStringList(*analysis.visionTags))
                                               : QJsonValue());
            pictures.emplace_back(rank, picture);
            continue;
        }
        QString text;
        QTextStream block(&text);
        block << escapedForLine(file) << ": " << analysis.people.size()
              << (analysis.people.size() == 1 ? " person" : " people");
        if (analysis.shotSize)
            block << ", shot " << shotText(analysis.shotSize);
        block << "\n";
        int number = 0;
        for (const pose::AnalysedPerson& person : analysis.people)
            printPerson(block, ++number, person);
        block.flush();
        if (byShot)
            texts.emplace_back(rank, text); // held back until every picture is known
        else
            out << text;
    }
    progress.finish();
    const auto byRank = [](const auto& a, const auto& b) { return a.first < b.first; };
    if (byShot) {
        std::stable_sort(pictures.begin(), pictures.end(), byRank);
        std::stable_sort(texts.begin(), texts.end(), byRank);
    }
    for (const auto& [rank, text] : texts)
        out << text;
    if (line.json()) {
        QJsonArray array;
        for (const auto& [rank, picture] : pictures)
            array.append(picture);
        out << QJsonDocument(array).toJson(QJsonDocument::Indented);
    }
    if (tiles) {
        const auto sheet = tiles->writeContactSheet();
        for (const QString& failure : tiles->failures())
            standardError() << "lumaro-cli pose: tiles: " << escapedForLine(failure) << "\n";
        failed += int(tiles->failures().size());
        if (!line.json()) {
            out << "tiles: " << tiles->written().size() - (sheet ? 1 : 0) << " written to "
                << escapedForLine(tilesDir) << "\n";
            if (sheet)
                out << "contact sheet: " << escapedForLine(*sheet) << "\n";
        }
    }
    if (folder) {
        QString error;
        const auto index = pose::PoseIndexFile::write(*folder, analysed, startedAt, &error);
        if (!index) {
            out.flush();
            return line.fail(QStringLiteral("the pose index could not be written: ") + error, exitPartial);
        }
        if (!line.json())
            out << "index: " << escapedForLine(*index) << "\n";
    }
    out.flush();
    standardError().flush();
    return failed > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
