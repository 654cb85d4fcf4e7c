// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/StoreSession.h"

#include "library/StoreConnection.h"

#include <chrono>
#include <memory>
#include <random>
#include <thread>

#include <sqlite3.h>

namespace lumaro::library {

namespace {

// Finalised on every path out of a call, success or not.
using StatementPtr = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

const StoreError kNotOpen{"database is not open", SQLITE_MISUSE, SQLITE_MISUSE};

int bindOne(sqlite3_stmt* statement, int position, const StoreValue& value)
{
    struct Binder
    {
        sqlite3_stmt* statement;
        int position;
        int operator()(std::monostate) const { return sqlite3_bind_null(statement, position); }
        int operator()(std::int64_t number) const { return sqlite3_bind_int64(statement, position, number); }
        int operator()(double number) const { return sqlite3_bind_double(statement, position, number); }
        int operator()(const std::string& text) const
        {
            return sqlite3_bind_text(statement, position, text.data(), int(text.size()), SQLITE_TRANSIENT);
        }
    };
    return std::visit(Binder{statement, position}, value);
}

int pauseBeforeAttempt(int attempt)
{
    static thread_local std::minstd_rand random{std::random_device{}()};
    const int span = 10 << attempt;
    return span / 2 + int(std::uniform_int_distribution<int>(0, span - 1)(random));
}

} // namespace

StoreSession::StoreSession(LogSink log)
    : m_log(std::move(log))
    , m_busyTimeoutMs(StoreConnection::defaultBusyTimeoutMs)
{
}

StoreSession::~StoreSession()
{
    if (m_db)
        sqlite3_close_v2(m_db);
}

std::string StoreSession::text(sqlite3_stmt* statement, int column)
{
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    return bytes ? std::string(bytes, size_t(sqlite3_column_bytes(statement, column))) : std::string();
}

bool StoreSession::open(const std::string& path, bool create)
{
    close();
    StoreConnection::takeCachePagesWhenNeeded();
    sqlite3* db = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | (create ? SQLITE_OPEN_CREATE : 0);
    const int code = sqlite3_open_v2(path.c_str(), &db, flags, nullptr);
    if (code != SQLITE_OK) {
        m_lastError = {db ? sqlite3_errmsg(db) : sqlite3_errstr(code), SQLITE_CANTOPEN, SQLITE_CANTOPEN};
        sqlite3_close_v2(db);
        return false;
    }
    if (!StoreConnection::configure(db, m_busyTimeoutMs)) {
        const int extended = sqlite3_extended_errcode(db);
        m_lastError = {sqlite3_errmsg(db), extended & 0xff, extended};
        sqlite3_close_v2(db);
        return false;
    }
    m_db = db;
    m_path = path;
    m_integrity = Integrity::unchecked;
    m_lastError = {};
    return true;
}

void StoreSession::close()
{
    if (!m_db)
        return;
    sqlite3_close_v2(m_db);
    m_db = nullptr;
    m_path.clear();
    m_log("✅ 数据库已关闭");
}

void StoreSession::setBusyTimeout(int milliseconds)
{
    m_busyTimeoutMs = milliseconds;
    if (m_db)
        sqlite3_busy_timeout(m_db, milliseconds);
}

std::int64_t StoreSession::lastInsertRowId() const
{
    return m_db ? sqlite3_last_insert_rowid(m_db) : 0;
}

void StoreSession::recordError()
{
    // With extended result codes on, sqlite3_errcode() answers the extended code too; the primary is its low byte.
    const int extended = sqlite3_extended_errcode(m_db);
    m_lastError = {sqlite3_errmsg(m_db), extended & 0xff, extended};
}

void StoreSession::logFailedStep()
{
    m_log("❌ SQL 执行失败: " + m_lastError.message + " (错误代码: " + std::to_string(m_lastError.code) +
          ", 扩展错误代码: " + std::to_string(m_lastError.extendedCode) + ")");
}

bool StoreSession::runQuietly(const char* sql)
{
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(m_db, sql, -1, &raw, nullptr) != SQLITE_OK) {
        recordError();
        return false;
    }
    const StatementPtr statement(raw, &sqlite3_finalize);
    int code = SQLITE_ROW;
    while (code == SQLITE_ROW)
        code = sqlite3_step(statement.get());
    if (code != SQLITE_DONE) {
        recordError();
        return false;
    }
    return true;
}

sqlite3_stmt* StoreSession::prepare(std::string_view sql, const StoreValues& parameters)
{
    if (m_debugSQLEnabled)
        m_log("   SQL: " + std::string(sql));
    if (!m_db) {
        m_lastError = kNotOpen;
        m_log("❌ SQL 准备失败: " + m_lastError.message);
        return nullptr;
    }
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.data(), int(sql.size()), &raw, nullptr) != SQLITE_OK) {
        recordError();
        m_log("❌ SQL 准备失败: " + m_lastError.message);
        sqlite3_finalize(raw);
        return nullptr;
    }
    StatementPtr statement(raw, &sqlite3_finalize);
    for (size_t i = 0; i < parameters.size(); ++i) {
        if (bindOne(raw, int(i) + 1, parameters[i]) != SQLITE_OK) {
            recordError();
            m_log("❌ SQL 准备失败: " + m_lastError.message);
            return nullptr;
        }
    }
    return statement.release();
}

bool StoreSession::read(std::string_view sql, const StoreValues& parameters, const RowReader& row)
{
    const StatementPtr statement(prepare(sql, parameters), &sqlite3_finalize);
    if (!statement)
        return false;
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(statement.get())) == SQLITE_ROW)
        row(statement.get());
    if (code != SQLITE_DONE) {
        recordError();
        logFailedStep();
        return false;
    }
    m_lastError = {};
    return true;
}

bool StoreSession::execute(std::string_view sql, const StoreValues& parameters)
{
    if (!mayWrite() || !read(sql, parameters, [](sqlite3_stmt*) {}))
        return false;
    const int changed = sqlite3_changes(m_db);
    if (changed == 0)
        m_log("⚠️ SQL 执行成功但没有行被影响: " + std::string(sql));
    else
        m_log("✅ SQL 执行成功，影响了 " + std::to_string(changed) + " 行");
    return true;
}

bool StoreSession::checkIntegrity()
{
    if (!m_db) {
        m_lastError = kNotOpen;
        return false;
    }
    if (m_integrity == Integrity::intact)
        return true;
    if (m_integrity == Integrity::damaged) {
        m_lastError = m_damage;
        return false;
    }
    std::vector<std::string> findings;
    const bool ran = read("PRAGMA quick_check;", {},
                          [&](sqlite3_stmt* statement) { findings.push_back(text(statement, 0)); });
    if (ran && findings == std::vector<std::string>{"ok"}) {
        m_integrity = Integrity::intact;
        return true;
    }
    // A check that could not run for another reason (a lock, the disk) says nothing about the file.
    if (ran || m_lastError.code == SQLITE_CORRUPT || m_lastError.code == SQLITE_NOTADB) {
        m_integrity = Integrity::damaged;
        const std::string finding = ran ? (findings.empty() ? std::string() : findings.front()) : m_lastError.message;
        m_lastError = m_damage = {"database disk image is malformed (" + finding + ")", SQLITE_CORRUPT, SQLITE_CORRUPT};
        m_log("❌ 数据库已损坏: " + finding);
    }
    return false;
}

bool StoreSession::mayWrite()
{
    if (!m_db || checkIntegrity())
        return true; // not open: the statement itself reports that
    if (m_integrity == Integrity::damaged)
        m_log("❌ 数据库已损坏，不写入: " + m_path);
    return false;
}

bool StoreSession::runTransaction(const std::function<bool()>& body, bool* began)
{
    *began = runQuietly("BEGIN IMMEDIATE;");
    if (!*began)
        return false;
    if (body() && runQuietly("COMMIT;"))
        return true;
    const StoreError cause = m_lastError;
    runQuietly("ROLLBACK;");
    m_lastError = cause;
    return false;
}

bool StoreSession::inTransaction(const std::function<bool()>& body)
{
    if (!m_db) {
        m_lastError = kNotOpen;
        return false;
    }
    if (!mayWrite())
        return false;
    // SQLite's own busy wait is not fair: a writer can sleep through every moment the lock was free while
    // others take it. Starting over after a randomised pause gives every process its turn.
    bool began = false;
    for (int attempt = 1;; ++attempt) {
        if (runTransaction(body, &began))
            return true;
        const bool busy = m_lastError.code == SQLITE_BUSY || m_lastError.code == SQLITE_LOCKED;
        if (!busy || attempt >= busyAttempts || m_busyTimeoutMs == 0)
            break;
        const int pauseMs = pauseBeforeAttempt(attempt);
        m_log("⚠️ 数据库被占用，" + std::to_string(pauseMs) + " ms 后重试 (第 " + std::to_string(attempt) + " 次)");
        std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs));
    }
    // A failed statement of `body` has said why already.
    if (!began)
        logFailedStep();
    return false;
}

} // namespace lumaro::library
