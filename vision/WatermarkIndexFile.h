// SPDX-License-Identifier: GPL-3.0-or-later
// The results of a watermark run as `_index/watermark_index_<stamp>_<key>.json`.
#pragma once

#include "vision/WatermarkResult.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QString>

namespace lumaro::vision {

struct WatermarkIndexData
{
    QList<WatermarkResult> results; // in browsing order
    QDateTime generatedAt;
    QString sourceFolderPath;
    bool allPictures = false; // every picture was read, not only the people pictures
};

// Any thread. Written through a temporary file renamed into place.
class WatermarkIndexFile
{
public:
    static QString fileName(const QString& stamp, const QString& key);
    static QJsonObject toJson(const WatermarkIndexData& data);
    static bool write(const QString& path, const WatermarkIndexData& data, QString* error = nullptr);
};

} // namespace lumaro::vision
