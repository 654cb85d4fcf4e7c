// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkIndexFile.h"

#include "vision/VisionIndexFile.h"

#include <QDir>
#include <QJsonArray>

namespace lumaro::vision {

namespace {

QJsonObject resultToJson(const WatermarkResult& r)
{
    QJsonObject o{
        {QStringLiteral("fileName"), r.fileName},
        {QStringLiteral("filePath"), r.filePath},
        {QStringLiteral("identifier"), r.isIdentified() ? QJsonValue(r.identifier) : QJsonValue()},
        {QStringLiteral("kind"), r.isIdentified() ? QJsonValue(r.kind) : QJsonValue()},
        {QStringLiteral("text"), r.isIdentified() ? QJsonValue(r.text) : QJsonValue()},
        {QStringLiteral("lines"), QJsonArray::fromStringList(r.lines)},
    };
    if (!r.error.isEmpty())
        o.insert(QStringLiteral("error"), r.error);
    return o;
}

} // namespace

QString WatermarkIndexFile::fileName(const QString& stamp, const QString& key)
{
    return QStringLiteral("watermark_index_") + stamp + QLatin1Char('_') + key + QStringLiteral(".json");
}

QJsonObject WatermarkIndexFile::toJson(const WatermarkIndexData& data)
{
    QJsonArray results;
    int identified = 0;
    for (const WatermarkResult& r : data.results) {
        results.append(resultToJson(r));
        identified += r.isIdentified() ? 1 : 0;
    }
    return QJsonObject{
        {QStringLiteral("sourceFolderPath"), data.sourceFolderPath},
        {QStringLiteral("sourceFolderName"), QDir(data.sourceFolderPath).dirName()},
        {QStringLiteral("generatedAt"), data.generatedAt.toUTC().toString(Qt::ISODate)},
        {QStringLiteral("pictures"), data.allPictures ? QStringLiteral("all") : QStringLiteral("people")},
        {QStringLiteral("totalImages"), qint64(data.results.size())},
        {QStringLiteral("identified"), identified},
        {QStringLiteral("results"), results},
    };
}

bool WatermarkIndexFile::write(const QString& path, const WatermarkIndexData& data, QString* error)
{
    return writeJsonAtomically(path, toJson(data), error);
}

} // namespace lumaro::vision
