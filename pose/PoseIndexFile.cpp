// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PoseIndexFile.h"

#include "platform/Log.h"
#include "platform/RegularFileReader.h"
#include "vision/IndexFolder.h"
#include "vision/IndexRunOrder.h"
#include "vision/VisionIndexFile.h"
#include "vision/VisionIndexNaming.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace lumaro::pose {

namespace {

QString tag()
{
    return QString::fromLatin1(PoseIndexFile::kLogTag);
}

QJsonValue optionalText(const std::optional<QString>& text)
{
    return text ? QJsonValue(*text) : QJsonValue();
}

QJsonValue shotJson(const std::optional<ShotSize>& shot)
{
    return shot ? QJsonValue(rawValue(*shot)) : QJsonValue();
}

QJsonObject boxJson(const QRectF& box)
{
    return QJsonObject{{QStringLiteral("x"), box.x()},
                       {QStringLiteral("y"), box.y()},
                       {QStringLiteral("width"), box.width()},
                       {QStringLiteral("height"), box.height()}};
}

QJsonObject jointsJson(const platform::JointDictionary& joints, const JointRepairs& repairs)
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

QJsonValue faceJson(const std::optional<FaceFacts>& face)
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

bool isSafeName(const QString& name)
{
    return !name.isEmpty() && !name.contains(u'/') && name != QLatin1String(".") &&
           name != QLatin1String("..");
}

// A name for the run that no file in `indexFolder` has yet.
QString freshName(const QString& indexFolder, const QString& stamp, const QString& key)
{
    const QString base = QString::fromLatin1(PoseIndexFile::kPrefix) + stamp + u'_' + key;
    QString name = base + QStringLiteral(".json");
    for (int n = 2; QFileInfo::exists(QDir(indexFolder).filePath(name)); ++n)
        name = base + u'_' + QString::number(n) + QStringLiteral(".json");
    return name;
}

} // namespace

QJsonObject PoseIndexFile::personJson(const AnalysedPerson& analysed)
{
    const PersonPose& person = analysed.pose;
    const PoseValueLevel1Result& first = person.level1;
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
    const PoseActionRuleDefinition& action = ruleDefinition(person.action);
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

QJsonObject PoseIndexFile::pictureJson(const PicturePoseAnalysis& analysis)
{
    QJsonArray people;
    for (const AnalysedPerson& person : analysis.people)
        people.append(personJson(person));
    return QJsonObject{{QStringLiteral("fileName"), QFileInfo(analysis.path).fileName()},
                       {QStringLiteral("filePath"), analysis.path},
                       {QStringLiteral("pixelWidth"), analysis.pixelSize.width()},
                       {QStringLiteral("pixelHeight"), analysis.pixelSize.height()},
                       {QStringLiteral("shotSize"), shotJson(analysis.shotSize)},
                       {QStringLiteral("people"), people}};
}

QJsonObject PoseIndexFile::toJson(const QString& folder, const std::vector<PicturePoseAnalysis>& pictures,
                                  const QDateTime& generatedAt)
{
    QJsonArray results;
    qint64 people = 0;
    for (const PicturePoseAnalysis& analysis : pictures) {
        results.append(pictureJson(analysis));
        people += qint64(analysis.people.size());
    }
    return QJsonObject{{QStringLiteral("sourceFolderPath"), folder},
                       {QStringLiteral("sourceFolderName"), QDir(folder).dirName()},
                       {QStringLiteral("generatedAt"), generatedAt.toUTC().toString(Qt::ISODate)},
                       {QStringLiteral("totalImages"), qint64(pictures.size())},
                       {QStringLiteral("totalPeople"), people},
                       {QStringLiteral("results"), results}};
}

std::optional<QString> PoseIndexFile::write(const QString& folder,
                                            const std::vector<PicturePoseAnalysis>& pictures,
                                            const QDateTime& startedAt, QString* error)
{
    const std::optional<QString> indexFolder = vision::IndexFolder::ensure(folder, tag());
    if (!indexFolder) {
        if (error)
            *error = QStringLiteral("cannot write into %1").arg(vision::IndexFolder::pathFor(folder));
        return std::nullopt;
    }
    const QString path = QDir(*indexFolder)
                             .filePath(freshName(*indexFolder, vision::VisionIndexNaming::runStamp(startedAt),
                                                 vision::VisionIndexNaming::folderKey(folder)));
    QString reason;
    if (!vision::writeJsonAtomically(path, toJson(folder, pictures, QDateTime::currentDateTime()), &reason)) {
        platform::Log::line(tag(), QStringLiteral("保存失败: ") + reason);
        if (error)
            *error = reason;
        return std::nullopt;
    }
    platform::Log::line(tag(), QStringLiteral("保存成功: ") + path);
    return path;
}

std::optional<PoseIndexData> PoseIndexFile::read(const QString& path, QString* error)
{
    const auto fail = [&](const QString& why) {
        if (error)
            *error = QStringLiteral("%1: not a pose index (%2)").arg(path, why);
        return std::nullopt;
    };
    QString reason;
    const std::optional<QByteArray> bytes = platform::RegularFileReader::read(path, kMaxBytes, &reason);
    if (!bytes) {
        if (error)
            *error = path + QStringLiteral(": ") + reason;
        return std::nullopt;
    }
    QJsonParseError parseError{};
    const QJsonDocument document = QJsonDocument::fromJson(*bytes, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return fail(parseError.errorString() + QStringLiteral(" at byte ") +
                    QString::number(parseError.offset));
    const QJsonObject root = document.object();
    if (!document.isObject() || !root.value(QStringLiteral("results")).isArray())
        return fail(QStringLiteral("no \"results\" list"));
    PoseIndexData data;
    data.sourceFolderPath = root.value(QStringLiteral("sourceFolderPath")).toString();
    data.generatedAt =
        QDateTime::fromString(root.value(QStringLiteral("generatedAt")).toString(), Qt::ISODate);
    for (const QJsonValue& value : root.value(QStringLiteral("results")).toArray()) {
        const QJsonObject entry = value.toObject();
        PoseIndexPicture picture;
        picture.fileName = entry.value(QStringLiteral("fileName")).toString();
        if (!isSafeName(picture.fileName))
            continue;
        picture.shotSize = entry.value(QStringLiteral("shotSize")).toString();
        for (const QJsonValue& person : entry.value(QStringLiteral("people")).toArray()) {
            picture.verdicts << person.toObject().value(QStringLiteral("verdict")).toString();
            picture.shotSizes << person.toObject().value(QStringLiteral("shotSize")).toString();
        }
        data.pictures.push_back(std::move(picture));
    }
    return data;
}

QStringList PoseIndexFile::filesNewestFirst(const QString& folder)
{
    std::vector<vision::IndexRunStamp> runs;
    for (const QString& path : vision::IndexFolder::jsonFiles(folder, QString::fromLatin1(kPrefix))) {
        const auto data = read(path);
        runs.push_back({path, data ? data->generatedAt : QDateTime()});
    }
    const QDateTime now = QDateTime::currentDateTime();
    std::stable_sort(runs.begin(), runs.end(),
                     [&](const auto& a, const auto& b) { return vision::IndexRunOrder::isNewer(a, b, now); });
    QStringList paths;
    for (const vision::IndexRunStamp& run : runs)
        paths << run.path;
    return paths;
}

} // namespace lumaro::pose
