// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli pose IMAGE…: each person's level-1 and level-2 pose verdicts, with the condition and reason that
// decided them and the action they stand for.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/ProgressBar.h"

#include "platform/Log.h"
#include "pose/PicturePoseAnalyzer.h"

#include <QCommandLineOption>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace lumaro::cli {

namespace {

QJsonValue optionalText(const std::optional<QString>& text)
{
    return text ? QJsonValue(*text) : QJsonValue();
}

QJsonObject jointsJson(const platform::JointDictionary& joints, const pose::JointRepairs& repairs)
{
    QJsonObject object;
    for (const platform::JointSample& joint : joints) {
        QJsonObject sample{{QStringLiteral("confidence"), double(joint.confidence)}};
        sample.insert(QStringLiteral("x"), joint.location ? QJsonValue(joint.location->x()) : QJsonValue());
        sample.insert(QStringLiteral("y"), joint.location ? QJsonValue(joint.location->y()) : QJsonValue());
        if (repairs.contains(joint.name))
            sample.insert(QStringLiteral("repair"), rawValue(repairs.value(joint.name)));
        object.insert(joint.name, sample);
    }
    return object;
}

QJsonValue shotJson(const std::optional<pose::ShotSize>& shot)
{
    return shot ? QJsonValue(rawValue(*shot)) : QJsonValue();
}

QString shotText(const std::optional<pose::ShotSize>& shot)
{
    return shot ? displayName(*shot) + u' ' + rawValue(*shot) : QStringLiteral("-");
}

QJsonObject boxJson(const QRectF& box)
{
    return QJsonObject{{QStringLiteral("x"), box.x()},
                       {QStringLiteral("y"), box.y()},
                       {QStringLiteral("width"), box.width()},
                       {QStringLiteral("height"), box.height()}};
}

QJsonValue faceJson(const std::optional<pose::FaceFacts>& face)
{
    if (!face)
        return QJsonValue();
    return QJsonObject{{QStringLiteral("box"), boxJson(face->box)},
                       {QStringLiteral("score"), double(face->score)},
                       {QStringLiteral("sizeShare"), face->sizeShare},
                       {QStringLiteral("column"), face->column},
                       {QStringLiteral("row"), face->row},
                       {QStringLiteral("powerPoint"), face->powerPoint},
                       {QStringLiteral("powerPointDistance"), face->powerPointDistance},
                       {QStringLiteral("onPowerPoint"), face->onPowerPoint}};
}

QJsonObject personJson(const pose::AnalysedPerson& analysed)
{
    const pose::PersonPose& person = analysed.pose;
    const pose::PoseValueLevel1Result& first = person.level1;
    QJsonObject level1{
        {QStringLiteral("pose"), rawValue(first.pose)},
        {QStringLiteral("side"), first.matchedSide ? QJsonValue(rawValue(*first.matchedSide)) : QJsonValue()},
        {QStringLiteral("relation"),
         first.matchedDirection ? QJsonValue(rawValue(first.matchedDirection->relation)) : QJsonValue()},
        {QStringLiteral("reason"),
         first.matchedDirection ? QJsonValue(first.matchedDirection->reason) : optionalText(first.reason)},
    };
    QJsonValue level2;
    if (person.level2) {
        level2 = QJsonObject{{QStringLiteral("pose"), rawValue(person.level2->pose)},
                             {QStringLiteral("matchedCondition"), person.level2->matchedCondition},
                             {QStringLiteral("reason"), person.level2->reason}};
    }
    const pose::PoseActionRuleDefinition& action = pose::ruleDefinition(person.action);
    return QJsonObject{{QStringLiteral("level1"), level1},
                       {QStringLiteral("level2"), level2},
                       {QStringLiteral("verdict"), person.verdict()},
                       {QStringLiteral("action"), action.id},
                       {QStringLiteral("actionName"), action.displayName},
                       {QStringLiteral("score"), double(analysed.score)},
                       {QStringLiteral("shotSize"), shotJson(analysed.shotSize)},
                       {QStringLiteral("box"), boxJson(analysed.box)},
                       {QStringLiteral("evidence"), rawValue(analysed.evidence)},
                       {QStringLiteral("face"), faceJson(analysed.face)},
                       {QStringLiteral("joints"), jointsJson(person.joints, analysed.repairs)}};
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
                       "folder's _index when there is one."));
    line.addPositional(QStringLiteral("IMAGE"), QStringLiteral("The pictures to analyse."),
                       QStringLiteral("IMAGE..."));
    line.addJsonOption();
    line.addOption(
        QCommandLineOption(QStringLiteral("sort"),
                           QStringLiteral("List the pictures by KEY instead of as given; \"shot\": from "
                                          "the closest framing to the widest, pictures with nobody last."),
                           QStringLiteral("KEY")));
    if (const auto stop = line.parse(arguments))
        return *stop;
    const bool byShot = line.isSet(QStringLiteral("sort"));
    if (byShot && line.value(QStringLiteral("sort")) != QStringLiteral("shot"))
        return line.fail(QStringLiteral("--sort takes \"shot\", not \"%1\"")
                             .arg(escapedForLine(line.value(QStringLiteral("sort")))),
                         exitUsage);
    const auto files = line.positional(1);
    if (!files)
        return exitUsage;
    for (const QString& file : *files) {
        const QFileInfo info(file);
        if (info.isDir())
            return line.fail(QStringLiteral("%1: is a folder, not a picture").arg(escapedForLine(file)),
                             exitUsage);
        if (!info.isFile())
            return line.fail(QStringLiteral("%1: no such file").arg(escapedForLine(file)), exitUsage);
    }

    pose::PicturePoseAnalyzer analyzer;
    if (!analyzer.hasModel())
        return line.fail(analyzer.modelProblem(), exitPartial);

    QTextStream& out = standardOutput();
    // Each picture's output with its framing's rank, so the list can be sorted by shot size when asked.
    std::vector<std::pair<int, QJsonObject>> pictures;
    std::vector<std::pair<int, QString>> texts;
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
                people.append(personJson(person));
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
    out.flush();
    standardError().flush();
    return failed > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
