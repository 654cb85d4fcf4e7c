// SPDX-License-Identifier: GPL-3.0-or-later
#include "home/HomeShelves.h"

#include "cards/CardImporter.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace lumaro::home {

Shelf HomeShelves::recent(const QStringList& recentFolders)
{
    return Shelf{recentFolders, {}};
}

Shelf HomeShelves::channels(const QList<library::Channel>& channels)
{
    Shelf shelf;
    for (const library::Channel& channel : channels) {
        if (shelf.folders.contains(channel.path))
            continue;
        shelf.folders << channel.path;
        shelf.titles.insert(channel.path, channel.name);
    }
    return shelf;
}

Shelf HomeShelves::newestRolls(const QString& importLocation, int count)
{
    if (importLocation.isEmpty())
        return {};
    static const QRegularExpression rollName(QStringLiteral("^roll(\\d{2,})$"));
    QList<std::pair<int, QString>> rolls;
    const QDir location(importLocation);
    for (const QString& name : location.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const auto match = rollName.match(name);
        if (match.hasMatch())
            rolls.append({match.captured(1).toInt(), name});
    }
    std::sort(rolls.begin(), rolls.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    Shelf shelf;
    for (qsizetype i = 0; i < std::min<qsizetype>(count, rolls.size()); ++i) {
        const QString roll = location.filePath(rolls.at(i).second);
        QString pictures = roll;
        for (const QString& kind :
             {cards::CardImporter::jpgFolderName(), cards::CardImporter::rawFolderName()}) {
            if (QFileInfo(roll + QLatin1Char('/') + kind).isDir()) {
                pictures = roll + QLatin1Char('/') + kind;
                break;
            }
        }
        shelf.folders << pictures;
        shelf.titles.insert(pictures, rolls.at(i).second);
    }
    return shelf;
}

} // namespace lumaro::home
