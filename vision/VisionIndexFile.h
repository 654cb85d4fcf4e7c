// SPDX-License-Identifier: GPL-3.0-or-later
// The index file of a run: its JSON layout, written atomically, and read back.
#pragma once

#include "vision/VisionRecognitionResult.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace lumaro::vision {

struct VisionIndexFileData
{
    QList<VisionRecognitionResult> results; // in the order the pictures finished
    QDateTime generatedAt;
    QString sourceFolderPath;
};

// Any thread. Writing goes through a temporary file in the same folder renamed into place, so a reader never
// sees half a file and a failed write leaves nothing behind.
class VisionIndexFile
{
public:
    static QJsonObject toJson(const VisionIndexFileData& data);
    // false with the reason in `error` when the file cannot be written.
    static bool write(const QString& path, const VisionIndexFileData& data, QString* error = nullptr);
    // nullopt (the reason in `error`) when the file is missing, not a regular file (a FIFO, a link to a
    // device), larger than kMaxBytes, or not a JSON object. Entries whose "fileName" holds "/" or is "." or
    // ".." are skipped: names read from a file are never trusted as paths.
    static std::optional<VisionIndexFileData> read(const QString& path, QString* error = nullptr);

    // Far above a real run's file (about 1 KB per picture), far below what would hurt to parse.
    static constexpr qint64 kMaxBytes = 64LL << 20;
};

// Writes a JSON document through QSaveFile; false with the reason in `error`.
bool writeJsonAtomically(const QString& path, const QJsonObject& object, QString* error);

} // namespace lumaro::vision
