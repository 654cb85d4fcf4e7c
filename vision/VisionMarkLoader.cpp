// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionMarkLoader.h"

#include "platform/Log.h"
#include "platform/RegularFileReader.h"
#include "vision/IndexFolder.h"
#include "vision/IndexRunOrder.h"
#include "vision/VisionIndexFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <vector>

namespace lumaro::vision {

using platform::Log;

namespace {

struct IndexRun
{
    QString path;
    QDateTime generatedAt; // invalid when missing or unreadable
    QJsonArray results;
};

std::optional<IndexRun> readRun(const QString& path, const QString& logTag)
{
    QString readError;
    const std::optional<QByteArray> bytes =
        platform::RegularFileReader::read(path, VisionIndexFile::kMaxBytes, &readError);
    if (!bytes) {
        Log::line(logTag, QStringLiteral("无法读取 Vision 索引文件: ") + path + QStringLiteral(" (") +
                              readError + QLatin1Char(')'));
        return std::nullopt;
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(*bytes, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject()) {
        const QString reason = error.error != QJsonParseError::NoError ? error.errorString()
                                                                       : QStringLiteral("not a JSON object");
        Log::line(logTag, QStringLiteral("Vision 索引文件格式错误，已跳过: ") + path + QStringLiteral(" (") +
                              reason + QLatin1Char(')'));
        return std::nullopt;
    }
    const QJsonObject root = document.object();
    IndexRun run{
        path, QDateTime::fromString(root.value(QStringLiteral("generatedAt")).toString(), Qt::ISODateWithMs),
        root.value(QStringLiteral("results")).toArray()};
    return run;
}

} // namespace

bool VisionMarkLoader::isSafeFileName(const QString& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && name != QLatin1String(".") &&
           name != QLatin1String("..");
}

std::optional<VisionMarks> VisionMarkLoader::load(const QString& pictureFolder, const QString& logTag)
{
    std::vector<IndexRun> runs;
    for (const QString& path : IndexFolder::jsonFiles(pictureFolder, QStringLiteral("vision_index_"))) {
        if (auto run = readRun(path, logTag))
            runs.push_back(std::move(*run));
    }
    if (runs.empty())
        return std::nullopt;
    // Oldest first, so that applying the runs in order lets the newest one's marks stand.
    const QDateTime now = QDateTime::currentDateTimeUtc();
    std::stable_sort(runs.begin(), runs.end(), [&now](const IndexRun& a, const IndexRun& b) {
        return IndexRunOrder::isNewer({b.path, b.generatedAt}, {a.path, a.generatedAt}, now);
    });

    VisionMarks marks;
    for (const IndexRun& run : runs) {
        marks.indexFiles << run.path;
        for (const QJsonValue& value : run.results) {
            const QJsonObject result = value.toObject();
            ++marks.resultCount;
            const QString name = result.value(QStringLiteral("fileName")).toString();
            if (!isSafeFileName(name)) {
                Log::line(logTag, QStringLiteral("忽略索引中的非法文件名: ") + name);
                continue;
            }
            const QJsonValue mark = result.value(QStringLiteral("classification"));
            // A newer run that saw the file without giving it a mark leaves it without one.
            if (mark.isString() && !mark.toString().isEmpty())
                marks.markByFileName.insert(name, mark.toString());
            else
                marks.markByFileName.remove(name);
        }
    }
    return marks;
}

} // namespace lumaro::vision
