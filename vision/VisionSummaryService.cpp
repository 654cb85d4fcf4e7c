// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionSummaryService.h"

#include "vision/VisionIndexFile.h"

#include "platform/Log.h"

#include <QHash>
#include <QJsonArray>
#include <QUrl>

#include <algorithm>

namespace lumaro::vision {

QList<VisionTagSummary> VisionSummaryService::tagSummaries(const QList<VisionRecognitionResult>& results)
{
    QHash<QString, int> counts;
    for (const VisionRecognitionResult& r : results) {
        for (const QString& tag : r.recognizedObjects)
            ++counts[tag];
    }
    QList<VisionTagSummary> summaries;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        summaries.append({it.key(), it.value()});
    std::sort(summaries.begin(), summaries.end(), [](const VisionTagSummary& a, const VisionTagSummary& b) {
        return a.count != b.count ? a.count > b.count : a.tag < b.tag;
    });
    return summaries;
}

QJsonObject VisionSummaryService::toJson(const QList<VisionRecognitionResult>& results, const QDateTime& generatedAt,
                                         const QString& sourceFolderPath)
{
    QJsonArray summaries;
    for (const VisionTagSummary& s : tagSummaries(results))
        summaries.append(QJsonObject{{QStringLiteral("tag"), s.tag}, {QStringLiteral("count"), s.count}});
    QJsonObject imageTags;
    for (const VisionRecognitionResult& r : results)
        imageTags.insert(r.fileName, QJsonArray::fromStringList(r.recognizedObjects));
    return QJsonObject{
        {QStringLiteral("tagSummaries"), summaries},
        {QStringLiteral("imageTags"), imageTags},
        {QStringLiteral("generatedAt"), generatedAt.toUTC().toString(Qt::ISODate)},
        {QStringLiteral("sourceURL"), QUrl::fromLocalFile(sourceFolderPath + QLatin1Char('/')).toString()},
        {QStringLiteral("sourceFolderPath"), sourceFolderPath},
    };
}

bool VisionSummaryService::write(const QString& path, const QList<VisionRecognitionResult>& results,
                                 const QDateTime& generatedAt, const QString& sourceFolderPath)
{
    QString error;
    if (writeJsonAtomically(path, toJson(results, generatedAt, sourceFolderPath), &error))
        return true;
    platform::Log::line(QStringLiteral("VISION_SUMMARY"), QStringLiteral("保存摘要失败: ") + error);
    return false;
}

} // namespace lumaro::vision
