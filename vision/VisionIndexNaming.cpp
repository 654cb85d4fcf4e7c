// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionIndexNaming.h"

#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>

#include <cstdlib>

namespace lumaro::vision {

QString VisionIndexNaming::runStamp(const QDateTime& startedAt)
{
    return startedAt.toLocalTime().toString(QStringLiteral("MMddHHmmss"));
}

QString VisionIndexNaming::folderKey(const QString& folderPath)
{
    static const QRegularExpression outside(QStringLiteral("[^a-zA-Z0-9_-]"));
    QString cleanPath = folderPath;
    while (cleanPath.size() > 1 && cleanPath.endsWith(QLatin1Char('/')))
        cleanPath.chop(1);
    QString name = QFileInfo(cleanPath).fileName();
    name.replace(outside, QStringLiteral("-"));
    // Unseeded, so one folder keeps one key across launches; no reader relies on it either way, they match
    // files by pattern. The size_t is taken as signed first, so "absolute value" means what it says.
    const auto hash = static_cast<qint64>(qHash(cleanPath));
    const quint64 magnitude = hash < 0 ? quint64(0) - quint64(hash) : quint64(hash);
    return name.toLower() + QLatin1Char('_') + QString::number(magnitude, 36);
}

QString VisionIndexNaming::indexFileName(const QString& stamp, const QString& key)
{
    return QStringLiteral("vision_index_") + stamp + QLatin1Char('_') + key + QStringLiteral(".json");
}

QString VisionIndexNaming::summaryFileName(const QString& stamp, const QString& key)
{
    return QStringLiteral("vision_summary_") + stamp + QLatin1Char('_') + key + QStringLiteral(".json");
}

} // namespace lumaro::vision
