// SPDX-License-Identifier: GPL-3.0-or-later
// A thin wrapper over one SQLite file connection: open, close, run a statement, read rows, all with log lines.
#pragma once

#include "library/FavouritesSchema.h"
#include "library/StoreConnection.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <optional>

struct sqlite3;
struct sqlite3_stmt;

namespace lumaro::library {

struct DatabaseError
{
    QString message;
    int code = 0;
    int extendedCode = 0;
};

// One connection, used from one thread at a time (the owner's). Every statement is prepared, bound, stepped
// and finalised within the call. Parameters bind by kind: QString text, integers and bool integer, double
// real, a null or invalid QVariant NULL; any other kind is refused with a warning and the statement is not
// run. A file that is not a database makes open() fail and is left untouched. A database that SQLite finds
// damaged is never written to: the first write on a connection runs checkIntegrity() and every write is
// refused after it failed, so the file stays as it was for the user to recover. Another process writing at
// the same time is waited for (busy timeout), and a transaction that still finds the lock taken is tried
// again after a growing pause.
class LocalDatabaseManager
{
public:
    using Row = QVariantMap;

    explicit LocalDatabaseManager(QString databaseName = QString::fromUtf8(FavouritesSchema::databaseName));
    ~LocalDatabaseManager();
    LocalDatabaseManager(const LocalDatabaseManager&) = delete;
    LocalDatabaseManager& operator=(const LocalDatabaseManager&) = delete;

    // The application's data folder (created when missing) joined with databaseName().
    QString defaultPath() const;
    // Opens (creating) the file at `path`, or at defaultPath() when empty. Closes any open connection first.
    bool open(const QString& path = {});
    void close();
    bool isOpen() const { return m_db != nullptr; }
    QString path() const { return m_path; }
    const QString& databaseName() const { return m_databaseName; }

    bool execute(const QString& sql, const QVariantList& parameters = {});
    std::optional<QList<Row>> query(const QString& sql, const QVariantList& parameters = {});
    // Hands each result row's values, in column order, to `row`; no map per row, for results of many thousands.
    bool queryEach(const QString& sql, const QVariantList& parameters,
                   const std::function<void(const QVariantList& values)>& row);
    // Runs `body` inside BEGIN IMMEDIATE … COMMIT; a false body or a failed commit rolls everything back.
    // IMMEDIATE takes the write lock up front, so a read-then-write in `body` cannot race another process.
    // When the lock stays taken past the busy timeout (other writers kept winning it), everything is rolled
    // back and `body` runs again in a new transaction after a growing, randomised pause, up to busyAttempts
    // times in all; `body` must therefore read what it needs inside the transaction.
    bool inTransaction(const std::function<bool()>& body);
    static constexpr int busyAttempts = 6;

    // PRAGMA quick_check over the whole file (tens of milliseconds for 50,000 records, so readers skip it).
    // False when SQLite finds damage, with SQLITE_CORRUPT and its first finding in lastError(); this
    // connection then refuses every write. The verdict is kept until the next open(), so asking again costs
    // nothing.
    bool checkIntegrity();

    // Milliseconds a statement waits for another connection's lock before failing (default 5000).
    void setBusyTimeout(int milliseconds);
    // The row id of the last successful INSERT on this connection.
    qint64 lastInsertRowId() const;
    void setDebugSQLEnabled(bool on) { m_debugSQLEnabled = on; }
    const DatabaseError& lastError() const { return m_lastError; }

private:
    // A prepared statement with its parameters bound, or null (logged) when either step failed.
    sqlite3_stmt* prepare(const QString& sql, const QVariantList& parameters);
    // Prepares, steps to the end handing each row to `row`, finalises; logs a failed step.
    bool step(const QString& sql, const QVariantList& parameters, const std::function<void(sqlite3_stmt*)>& row);
    bool runQuietly(const char* sql);
    void recordError();
    // Checks the file before this connection's first write; false (logged) for a damaged one.
    bool mayWrite();
    // One BEGIN IMMEDIATE … COMMIT round; true when it committed. `began`: whether the write lock was taken.
    bool runTransaction(const std::function<bool()>& body, bool* began);

    sqlite3* m_db = nullptr;
    QString m_databaseName;
    QString m_path;
    int m_busyTimeoutMs = StoreConnection::defaultBusyTimeoutMs;
    bool m_debugSQLEnabled = false;
    DatabaseError m_lastError;
    enum class Integrity
    {
        unchecked,
        intact,
        damaged
    } m_integrity = Integrity::unchecked;
    DatabaseError m_damage;
};

} // namespace lumaro::library
