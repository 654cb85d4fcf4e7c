// SPDX-License-Identifier: GPL-3.0-or-later
// One SQLite file connection for Qt code: a StoreSession whose values are QVariants, whose paths are QStrings
// and whose log lines go to platform::Log.
#pragma once

#include "library/FavouritesSchema.h"
#include "library/StoreSession.h"

#include <QList>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace lumaro::library {

struct DatabaseError
{
    QString message;
    int code = 0;
    int extendedCode = 0;
};

// The rules of StoreSession hold (one thread at a time, damaged files never written, busy writers waited for
// and retried). Parameters bind by kind: QString text (its file-name bytes, so a name that is not UTF-8 is
// stored as it is), integers and bool integer, double real, a null or invalid QVariant NULL;
// any other kind is refused with a warning and the statement is not run. A file that is not a database makes
// open() fail and is left untouched.
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
    bool isOpen() const { return m_session.isOpen(); }
    QString path() const;
    const QString& databaseName() const { return m_databaseName; }

    bool execute(const QString& sql, const QVariantList& parameters = {});
    std::optional<QList<Row>> query(const QString& sql, const QVariantList& parameters = {});
    // Hands each result row's values, in column order, to `row`; no map per row, for results of many thousands.
    bool queryEach(const QString& sql, const QVariantList& parameters,
                   const std::function<void(const QVariantList& values)>& row);
    // As StoreSession::inTransaction.
    bool inTransaction(const std::function<bool()>& body) { return m_session.inTransaction(body); }
    static constexpr int busyAttempts = StoreSession::busyAttempts;
    // As StoreSession::checkIntegrity.
    bool checkIntegrity() { return m_session.checkIntegrity(); }

    // Milliseconds a statement waits for another connection's lock before failing (default 5000).
    void setBusyTimeout(int milliseconds) { m_session.setBusyTimeout(milliseconds); }
    // The row id of the last successful INSERT on this connection.
    qint64 lastInsertRowId() const { return m_session.lastInsertRowId(); }
    void setDebugSQLEnabled(bool on) { m_session.setDebugSQLEnabled(on); }
    DatabaseError lastError() const;
    // The connection itself, for code that runs without Qt (the favourites' change rule).
    StoreSession& session() { return m_session; }

private:
    // The parameters as the session binds them; nullopt (logged) when one is of a kind it does not take.
    std::optional<StoreValues> storeValues(const QVariantList& parameters);

    StoreSession m_session;
    QString m_databaseName;
};

} // namespace lumaro::library
