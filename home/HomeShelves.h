// SPDX-License-Identifier: GPL-3.0-or-later
// The rows of folder cards on the home page: recent folders, channels, the newest imported rolls.
#pragma once

#include "library/Channel.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace lumaro::home {

// Folders in the order shown, and the title of each card where it is not the folder's own name.
struct Shelf
{
    QStringList folders;
    QHash<QString, QString> titles;
};

// Pure functions over what is on disk; the roll listing reads the import location, so call it off the main
// thread when that may be a slow volume.
class HomeShelves
{
public:
    static Shelf recent(const QStringList& recentFolders);
    static Shelf channels(const QList<library::Channel>& channels);
    // The `count` highest-numbered "rollNN" folders of the import location, newest first. A roll's card shows
    // the pictures of its JPG folder, else of its RAW folder, else its own, titled by the roll's name.
    static Shelf newestRolls(const QString& importLocation, int count = 6);
};

} // namespace lumaro::home
