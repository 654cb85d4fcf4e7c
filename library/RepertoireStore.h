// SPDX-License-Identifier: GPL-3.0-or-later
// "Repertoire" bundles: named sets of pictures gathered from any folders, kept in SQLite in the data folder.
#pragma once

#include "library/LocalDatabaseManager.h"
#include "platform/Clock.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace lumaro::library {

struct RepertoireBundle
{
    qint64 id = 0;
    QString name;
    double createdAt = 0;
    int pictureCount = 0;
};

struct RepertoireItem
{
    QString filePath; // where the picture is now, as far as the bundle knows
    double addedAt = 0;
    bool isPresent = true;
};

// One connection ("repertoire.db" in the application's data folder), main thread or one worker at a time. A
// bundle holds each path once, in the order pictures were added. Pictures are never deleted or copied by the
// store: removing one from a bundle only forgets it there.
//
// A bundle follows its pictures through Lumaro's own operations: a picture put back from the Trash is at its
// path again, and one renamed by grouping is found again by `sameShot`, a function that maps a file name to
// what stays the same across those renames (the name without its group prefix); items() relinks it and stores
// the new path. A picture that cannot be found is listed with isPresent false, never dropped.
class RepertoireStore
{
public:
    using NameKey = std::function<QString(const QString& fileName)>;

    explicit RepertoireStore(NameKey sameShot = {}, platform::Clock clock = platform::systemClock());

    // Opens (creating) the database, the default location when `path` is empty, and makes the tables.
    bool open(const QString& path = {});
    LocalDatabaseManager& dbManager() { return m_db; }

    std::optional<QList<RepertoireBundle>> bundles();
    std::optional<RepertoireBundle> bundle(const QString& name);
    // nullopt on success, else why not (an empty or taken name, a failed statement).
    std::optional<QString> create(const QString& name);
    std::optional<QString> rename(const QString& name, const QString& newName);
    // Forgets the bundle and its list; the pictures stay where they are.
    std::optional<QString> drop(const QString& name);

    // Adds the pictures not yet in the bundle; returns how many were new, nullopt when a statement failed.
    std::optional<int> add(const QString& bundleName, const QStringList& paths);
    std::optional<int> remove(const QString& bundleName, const QStringList& paths);
    // The bundle's pictures in the order they were added, relinked where they moved (see above).
    std::optional<QList<RepertoireItem>> items(const QString& bundleName);

    static QString cleanedPath(const QString& path);

private:
    bool ensureTables();
    // Where a missing picture went, when it can be told; empty otherwise.
    QString follow(const QString& path) const;

    LocalDatabaseManager m_db;
    NameKey m_sameShot;
    platform::Clock m_clock;
};

} // namespace lumaro::library
