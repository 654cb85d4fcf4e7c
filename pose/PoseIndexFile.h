// SPDX-License-Identifier: GPL-3.0-or-later
// The results of a pose run over a folder as `_index/pose_index_<stamp>_<key>.json`: every person of every
// picture with their verdicts, shot size, face and joints; and reading such a file back.
#pragma once

#include "pose/PicturePoseAnalyzer.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace lumaro::pose {

// One picture of a run as read back: what a listing or a sort needs.
struct PoseIndexPicture
{
    QString fileName;
    QString shotSize;      // raw value, empty with nobody
    QStringList verdicts;  // one per person, surest first
    QStringList shotSizes; // the same people's framing (empty string: none)
};

struct PoseIndexData
{
    QString sourceFolderPath;
    QDateTime generatedAt;
    std::vector<PoseIndexPicture> pictures;
};

// Any thread, blocking.
class PoseIndexFile
{
public:
    static constexpr const char* kLogTag = "POSE_INDEX";
    static constexpr const char* kPrefix = "pose_index_";
    // Far above a real run's file (a few KB per person), far below what would hurt to parse.
    static constexpr qint64 kMaxBytes = 64LL << 20;

    static QJsonObject personJson(const AnalysedPerson& person);
    static QJsonObject pictureJson(const PicturePoseAnalysis& analysis);
    static QJsonObject toJson(const QString& folder, const std::vector<PicturePoseAnalysis>& pictures,
                              const QDateTime& generatedAt);

    // Writes the run into the folder's `_index` (created when missing; a plain file of that name is never
    // replaced) under a name no other file has: an earlier run's file is never overwritten. The file appears
    // whole or not at all (written beside and renamed into place). The path written, or nullopt with the
    // reason in `error` (also logged).
    static std::optional<QString> write(const QString& folder,
                                        const std::vector<PicturePoseAnalysis>& pictures,
                                        const QDateTime& startedAt, QString* error = nullptr);
    // nullopt with a reason a user understands when the file is missing, not a regular file, too large, or
    // not a pose index (broken JSON, wrong layout). Pictures whose name holds "/" or is "." or ".." are left
    // out: names read from a file are never trusted as paths.
    static std::optional<PoseIndexData> read(const QString& path, QString* error = nullptr);
    // `_index/pose_index_*.json` of the folder, newest run first.
    static QStringList filesNewestFirst(const QString& folder);
};

} // namespace lumaro::pose
