// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionIndexFile.h"

#include "platform/RegularFileReader.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

namespace lumaro::vision {

namespace {

QJsonObject resultToJson(const VisionRecognitionResult& r)
{
    return QJsonObject{
        {QStringLiteral("fileName"), r.fileName},
        {QStringLiteral("filePath"), r.filePath},
        {QStringLiteral("confidence"), r.confidence},
        {QStringLiteral("pixelWidth"), r.pixelWidth},
        {QStringLiteral("pixelHeight"), r.pixelHeight},
        {QStringLiteral("classification"), r.classificationMark},
        {QStringLiteral("objects"), QJsonArray::fromStringList(r.recognizedObjects)},
        {QStringLiteral("text"), QJsonArray::fromStringList(r.recognizedText)},
        {QStringLiteral("scene"), QJsonArray::fromStringList(r.sceneClassification)},
    };
}

QStringList strings(const QJsonValue& value)
{
    QStringList list;
    for (const QJsonValue& item : value.toArray()) {
        if (item.isString())
            list << item.toString();
    }
    return list;
}

bool isSafeName(const QString& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && name != QLatin1String(".") &&
           name != QLatin1String("..");
}

} // namespace

QJsonObject VisionIndexFile::toJson(const VisionIndexFileData& data)
{
    QJsonArray results;
    qsizetype objects = 0, text = 0, scenes = 0;
    for (const VisionRecognitionResult& r : data.results) {
        results.append(resultToJson(r));
        objects += r.recognizedObjects.size();
        text += r.recognizedText.size();
        scenes += r.sceneClassification.size();
    }
    return QJsonObject{
        {QStringLiteral("sourceFolderPath"), data.sourceFolderPath},
        {QStringLiteral("sourceFolderName"), QDir(data.sourceFolderPath).dirName()},
        {QStringLiteral("generatedAt"), data.generatedAt.toUTC().toString(Qt::ISODate)},
        {QStringLiteral("totalImages"), qint64(data.results.size())},
        {QStringLiteral("totalObjects"), qint64(objects)},
        {QStringLiteral("totalText"), qint64(text)},
        {QStringLiteral("totalScenes"), qint64(scenes)},
        {QStringLiteral("results"), results},
    };
}

bool writeJsonAtomically(const QString& path, const QJsonObject& object, QString* error)
{
    QSaveFile file(path);
    const QByteArray bytes = QJsonDocument(object).toJson(QJsonDocument::Indented);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    if (error)
        *error = file.errorString();
    return false;
}

bool VisionIndexFile::write(const QString& path, const VisionIndexFileData& data, QString* error)
{
    return writeJsonAtomically(path, toJson(data), error);
}

std::optional<VisionIndexFileData> VisionIndexFile::read(const QString& path, QString* error)
{
    const std::optional<QByteArray> bytes = platform::RegularFileReader::read(path, kMaxBytes, error);
    if (!bytes)
        return std::nullopt;
    QJsonParseError parseError{};
    const QJsonDocument document = QJsonDocument::fromJson(*bytes, &parseError);
    if (error && parseError.error != QJsonParseError::NoError)
        *error = parseError.errorString();
    if (!document.isObject())
        return std::nullopt;
    const QJsonObject root = document.object();
    VisionIndexFileData data;
    data.sourceFolderPath = root.value(QStringLiteral("sourceFolderPath")).toString();
    data.generatedAt =
        QDateTime::fromString(root.value(QStringLiteral("generatedAt")).toString(), Qt::ISODate);
    for (const QJsonValue& value : root.value(QStringLiteral("results")).toArray()) {
        const QJsonObject o = value.toObject();
        VisionRecognitionResult r;
        r.fileName = o.value(QStringLiteral("fileName")).toString();
        if (!isSafeName(r.fileName))
            continue;
        r.filePath = o.value(QStringLiteral("filePath")).toString();
        r.confidence = o.value(QStringLiteral("confidence")).toDouble();
        r.pixelWidth = o.value(QStringLiteral("pixelWidth")).toInt();
        r.pixelHeight = o.value(QStringLiteral("pixelHeight")).toInt();
        r.classificationMark = o.value(QStringLiteral("classification")).toString();
        r.recognizedObjects = strings(o.value(QStringLiteral("objects")));
        r.recognizedText = strings(o.value(QStringLiteral("text")));
        r.sceneClassification = strings(o.value(QStringLiteral("scene")));
        data.results << r;
    }
    return data;
}

} // namespace lumaro::vision
