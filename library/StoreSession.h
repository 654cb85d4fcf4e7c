// SPDX-License-Identifier: GPL-3.0-or-later
// One SQLite connection to a Lumaro store and the rules every write to it keeps, without Qt: the window and
// lumaro-cli-light use it through LocalDatabaseManager, lumaro-cli uses it as it is.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace lumaro::library {

struct StoreError
{
    std::string message;
    int code = 0;
    int extendedCode = 0;
};

// NULL, INTEGER, REAL or TEXT; text is bound as the bytes it holds (a file name need not be UTF-8).
using StoreValue = std::variant<std::monostate, std::int64_t, double, std::string>;
using StoreValues = std::vector<StoreValue>;

// Used from one thread at a time (the owner's). Every statement is prepared, bound, stepped and finalised
// within the call. A database that SQLite finds damaged is never written to: the first write on a connection
// runs checkIntegrity() and every write is refused after it failed, so the file stays as it was for the user
// to recover. Another process writing at the same time is waited for (busy timeout), and a transaction that
// still finds the lock taken is tried again after a growing, randomised pause. What happens is told, one
// message at a time, to the log given.
class StoreSession
{
public:
    using LogSink = std::function<void(const std::string& message)>;
    using RowReader = std::function<void(sqlite3_stmt* statement)>;

    explicit StoreSession(LogSink log);
    ~StoreSession();
    StoreSession(const StoreSession&) = delete;
    StoreSession& operator=(const StoreSession&) = delete;

    // Opens (creating it when `create`) the file at `path` and sets it up as every connection is. Closes any
    // open connection first. Nothing is logged: the caller words the outcome. False, with lastError() set, for
    // a file that cannot be opened or is no database; such a file is left untouched.
    bool open(const std::string& path, bool create);
    // Logs "✅ 数据库已关闭" when a connection was open.
    void close();
    bool isOpen() const { return m_db != nullptr; }
    const std::string& path() const { return m_path; }

    // A statement that changes the store: refused on a damaged one; logs how many rows it changed.
    bool execute(std::string_view sql, const StoreValues& parameters = {});
    // Steps a statement to its end, handing each result row to `row`.
    bool read(std::string_view sql, const StoreValues& parameters, const RowReader& row);
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

    // Milliseconds a statement waits for another connection's lock before failing.
    void setBusyTimeout(int milliseconds);
    std::int64_t lastInsertRowId() const;
    void setDebugSQLEnabled(bool on) { m_debugSQLEnabled = on; }
    const StoreError& lastError() const { return m_lastError; }
    // For a caller that refuses a statement before it reaches SQLite (a parameter it cannot bind).
    void setLastError(StoreError error) { m_lastError = std::move(error); }

    static std::string text(sqlite3_stmt* statement, int column);

private:
    sqlite3_stmt* prepare(std::string_view sql, const StoreValues& parameters);
    bool runQuietly(const char* sql);
    void recordError();
    void logFailedStep();
    // Checks the file before this connection's first write; false (logged) for a damaged one.
    bool mayWrite();
    // One BEGIN IMMEDIATE … COMMIT round; true when it committed. `began`: whether the write lock was taken.
    bool runTransaction(const std::function<bool()>& body, bool* began);

    LogSink m_log;
    sqlite3* m_db = nullptr;
    std::string m_path;
    int m_busyTimeoutMs;
    bool m_debugSQLEnabled = false;
    StoreError m_lastError;
    enum class Integrity
    {
        unchecked,
        intact,
        damaged
    } m_integrity = Integrity::unchecked;
    StoreError m_damage;
};

} // namespace lumaro::library
