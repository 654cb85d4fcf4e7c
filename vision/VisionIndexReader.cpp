// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionIndexReader.h"

#include "vision/IndexFolder.h"
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
    std::stable_sort(runs.begin(), runs.end(), [](const Run& a, const Run& b) {
        const bool aDated = a.data.generatedAt.isValid();
        const bool bDated = b.data.generatedAt.isValid();
        if (aDated != bDated)
            return aDated;
        if (aDated && a.data.generatedAt != b.data.generatedAt)
            return a.data.generatedAt > b.data.generatedAt;
        return a.path > b.path;
    });
    return runs;
}

} // namespace

QStringList VisionIndexReader::indexFilesNewestFirst(const QString& pictureFolder)
{
    QStringList paths;
    for (const Run& run : runsNewestFirst(pictureFolder))
        paths << run.path;
    return paths;
}

std::optional<VisionRecognitionResult> VisionIndexReader::resultFor(const QString& pictureFolder,
                                                                    const QString& fileName, QStringList* unreadable)
{
    for (const Run& run : runsNewestFirst(pictureFolder, unreadable)) {
        for (const VisionRecognitionResult& result : run.data.results) {
            if (result.fileName == fileName)
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
            if (!latest.contains(result.fileName))
                latest.insert(result.fileName, result);
        }
    }
    return latest;
}

} // namespace lumaro::vision
