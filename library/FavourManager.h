// SPDX-License-Identifier: GPL-3.0-or-later
// The favourites table and the in-memory list of its records that the views watch.
#pragma once

#include "library/FavourRecord.h"
#include "library/FavourTable.h"
#include "library/FavouritesSchema.h"
#include "library/LocalDatabaseManager.h"
#include "platform/Clock.h"

#include <QList>
#include <QObject>

#include <functional>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::library {

// The outcome of a lookup or a change: `ok` false when a statement failed (logged); `record` empty when no row
// matched, or when un-marking a picture that had no row.
struct FavourResult
{
    bool ok = false;
    std::optional<FavourRecord> record;
    explicit operator bool() const { return ok; }
};

// Main thread only (the connection is the owner's). A path is stored in its cleaned absolute form; a row written
// under another form of the same path, and rows with an empty path, are merged away the next time that picture
// changes. A change runs in one IMMEDIATE transaction, so two processes toggling at once both keep their change.
// When any statement fails, `records` stays as it was and no notification is posted. "FavourStateChanged" is posted
// after each change with the user info keys "filePath", "isFavour" and "favourType".
class FavourManager : public QObject
{
    Q_OBJECT
public:
    using CopyRunner = std::function<void(std::function<void()> copy)>;

    // The application's store at the default location, opened on first use.
    static FavourManager& shared();

    explicit FavourManager(const platform::SettingsStore& settings, platform::Clock clock = platform::systemClock(),
                           QObject* parent = nullptr);

    // Opens the database (default location when empty), makes sure the table exists and loads every record
    // into `records` unless `loadRecords` is false (a one-shot command that reads with its own query).
    bool open(const QString& path = {}, bool loadRecords = true);
    LocalDatabaseManager& dbManager() { return m_dbManager; }
    const QString& tableName() const { return m_tableName; }
    const QList<FavourRecord>& records() const { return m_records; }
    void setDebugSQLEnabled(bool on);
    // How a favourites copy runs; synchronous by default, the app hands it to a worker thread.
    void setCopyRunner(CopyRunner runner) { m_copyRunner = std::move(runner); }

    bool ensureTable();
    // Every row, oldest creation last, into `records`.
    bool loadAll();
    // Rows marked favourite, newest change first.
    std::optional<QList<FavourRecord>> favourites();
    // Only the paths of those rows, in the same order, handed one by one to `path`: what a plain listing
    // prints, without building 50,000 records. False when the statement failed.
    bool forEachFavouritePath(const std::function<void(const QString& path)>& path);
    // The row of `path` as written; an empty path never matches.
    FavourResult find(const QString& path);
    // Number of rows whose path is empty or NULL.
    std::optional<int> audit();
    // Deletes the rows that audit() counts; returns how many went.
    std::optional<int> removeEmptyPathRecords();

    // Statement-level changes, each in its own transaction. insert() writes the record as given.
    FavourResult insert(const FavourRecord& record);
    bool update(const FavourRecord& record);
    bool remove(qint64 id);

    // Heart button: marks or unmarks `path` as a favourite.
    FavourResult setFavour(const QString& path, bool isFavour);
    // Type button: stores `type` and marks the picture a favourite; nullopt clears the type only.
    FavourResult setType(const QString& path, std::optional<FavourType> type);

    static QString cleanedPath(const QString& path);

Q_SIGNALS:
    void recordsChanged();

private:
    void ensureNameIndex();
    // Rows of FavourTable::select(clause), bound to `path` when it is not null.
    std::optional<QList<FavourRecord>> select(std::string_view clause, const QString& path = QString());
    using TableChange =
        std::function<FavourTable::Change(const std::string& givenPath, const std::string& cleanPath, double now)>;
    // `marksFavourite`: the change makes the picture a favourite (its favourites copy is made first).
    FavourResult change(const QString& path, bool marksFavourite, const TableChange& write);
    void applyToRecords(const FavourRecord& saved, const QString& givenPath, bool mergedAway);
    void announce(const FavourRecord& record);

    LocalDatabaseManager m_dbManager;
    QString m_tableName = QString::fromUtf8(FavouritesSchema::table);
    QList<FavourRecord> m_records;
    bool m_debugSQLEnabled = false;
    const platform::SettingsStore& m_settings;
    platform::Clock m_clock;
    CopyRunner m_copyRunner;
    FavourTable m_table;
};

} // namespace lumaro::library
