// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionIndexReader.h"

#include "vision/GroupPrefix.h"
#include "vision/IndexFolder.h"
#include "vision/IndexRunOrder.h"
#include "vision/VisionIndexFile.h"

#include <QDateTime>

#include <algorithm>
#include <vector>

namespace lumaro::vision {

namespace {

struct Run
{
    QString path;
    VisionIndexFileData data;
};

std::vector<Run> runsNewestFirst(const QString& pictureFolder, QStringList* unreadable = nullptr)
{
    std::vector<Run> runs;
    for (const QString& path : IndexFolder::jsonFiles(pictureFolder, QStringLiteral("vision_index_"))) {
        if (auto data = VisionIndexFile::read(path))
            runs.push_back({path, std::move(*data)});
        else if (unreadable)
            *unreadable << path;
    }
    const QDateTime now = QDateTime::currentDateTimeUtc();
    std::stable_sort(runs.begin(), runs.end(), [&now](const Run& a, const Run& b) {
        return IndexRunOrder::isNewer({a.path, a.data.generatedAt}, {b.path, b.data.generatedAt}, now);
    });
    return runs;
}

} // namespace

QString VisionIndexReader::lookupName(const QString& fileName)
{
    return GroupPrefix::stripped(fileName);
}

QStringList VisionIndexReader::indexFilesNewestFirst(const QString& pictureFolder)
{
    QStringList paths;
    for (const Run& run : runsNewestFirst(pictureFolder))
        paths << run.path;
    return paths;
}

std::optional<VisionRecognitionResult>
VisionIndexReader::resultFor(const QString& pictureFolder, const QString& fileName, QStringList* unreadable)
{
    const QString wanted = lookupName(fileName);
    for (const Run& run : runsNewestFirst(pictureFolder, unreadable)) {
        for (const VisionRecognitionResult& result : run.data.results) {
            if (lookupName(result.fileName) == wanted)
                return result;
        }
    }
    return std::nullopt;
}

QHash<QString, VisionRecognitionResult> VisionIndexReader::latestResults(const QString& pictureFolder)
{
    QHash<QString, VisionRecognitionResult> latest;
    for (const Run& run : runsNewestFirst(pictureFolder)) {
        for (const VisionRecognitionResult& result : run.data.results) {
            const QString key = lookupName(result.fileName);
            if (!latest.contains(key))
                latest.insert(key, result);
        }
    }
    return latest;
}

} // namespace lumaro::vision
