// SPDX-License-Identifier: GPL-3.0-or-later
// The summary file of a run: how often each tag was found, and each picture's tags.
#pragma once

#include "vision/VisionRecognitionResult.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

namespace lumaro::vision {

struct VisionTagSummary
{
    QString tag;
    int count = 0;
};

// Any thread. Tags are counted from `recognizedObjects` only: the scene list repeats the same labels, and
// counting both would double every count. `tagSummaries` is ordered by count, most frequent first, then by
// tag; `imageTags` maps each file name to its tags.
class VisionSummaryService
{
public:
    static QList<VisionTagSummary> tagSummaries(const QList<VisionRecognitionResult>& results);
    static QJsonObject toJson(const QList<VisionRecognitionResult>& results, const QDateTime& generatedAt,
                              const QString& sourceFolderPath);
    // Logs "VISION_SUMMARY - 保存摘要失败: " and the reason when the file cannot be written.
    static bool write(const QString& path, const QList<VisionRecognitionResult>& results,
                      const QDateTime& generatedAt, const QString& sourceFolderPath);
};

} // namespace lumaro::vision
