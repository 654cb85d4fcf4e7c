// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/LocalDatabaseManager.h"

#include "library/FavouritesSchema.h"
#include "library/StoreConnection.h"

#include "platform/files/FileNameCodec.h"

#include "platform/AppPaths.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QThread>

#include <sqlite3.h>

#include <memory>

namespace lumaro::library {

namespace {

const QString kTag = QString::fromUtf8(FavouritesSchema::databaseLogTag);

void log(const QString& message)
{
    platform::Log::line(kTag, message);
}

// Finalised on every path out of a call, success or not.
using StatementPtr = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

QString describe(const QVariant& value)
{
    const QString text = value.toString();
    if (!text.isEmpty())
        return text;
    return QString::fromLatin1(value.typeName() ? value.typeName() : "unknown");
}

// SQLITE_OK, or SQLITE_MISMATCH for a kind this wrapper does not bind.
int bindOne(sqlite3_stmt* statement, int position, const QVariant& value)
{
    if (value.isNull() || !value.isValid())
        return sqlite3_bind_null(statement, position);
    switch (value.typeId()) {
    case QMetaType::QString: {
        // A path may hold a name that is not UTF-8; its bytes are stored as they are and read back the same.
        const QByteArray utf8 = platform::FileNameCodec::encode(value.toString());
        return sqlite3_bind_text(statement, position, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    }
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return sqlite3_bind_int64(statement, position, value.toLongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return sqlite3_bind_double(statement, position, value.toDouble());
    default:
        return SQLITE_MISMATCH;
    }
}

QVariant columnValue(sqlite3_stmt* statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return qint64(sqlite3_column_int64(statement, column));
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    case SQLITE_TEXT: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        return platform::FileNameCodec::decode(QByteArray(text, sqlite3_column_bytes(statement, column)));
    }
    case SQLITE_BLOB: {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
        return QByteArray(bytes, sqlite3_column_bytes(statement, column));
    }
    default:
        return QVariant();
    }
}

} // namespace

LocalDatabaseManager::LocalDatabaseManager(QString databaseName)
    : m_databaseName(std::move(databaseName))
{
}

LocalDatabaseManager::~LocalDatabaseManager()
{
    if (m_db)
        sqlite3_close_v2(m_db);
}

QString LocalDatabaseManager::defaultPath() const
{
    return QDir(platform::AppPaths::dataDir()).filePath(m_databaseName);
}

bool LocalDatabaseManager::open(const QString& path)
{
    close();
    const QString target = path.isEmpty() ? defaultPath() : path;
    const auto refuse = [&](const QString& message) {
        m_lastError = {message, SQLITE_CANTOPEN, SQLITE_CANTOPEN};
        log(QStringLiteral("❌ 无法打开数据库: ") + message);
        log(QStringLiteral("   数据库路径: ") + target);
        return false;
    };
    if (path.isEmpty() && !QDir().mkpath(QFileInfo(target).absolutePath()))
        return refuse(QStringLiteral("cannot create the folder ") + QFileInfo(target).absolutePath());

    StoreConnection::takeCachePagesWhenNeeded();
    sqlite3* db = nullptr;
    const int code = sqlite3_open_v2(platform::FileNameCodec::encode(target).constData(), &db,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    if (code != SQLITE_OK) {
        const QString message = db ? QString::fromUtf8(sqlite3_errmsg(db)) : QString::fromUtf8(sqlite3_errstr(code));
        sqlite3_close_v2(db);
        return refuse(message);
    }
    m_db = db;
    m_path = target;
    m_integrity = Integrity::unchecked;
    if (!StoreConnection::configure(m_db, m_busyTimeoutMs)) {
        recordError();
        const DatabaseError error = m_lastError;
        sqlite3_close_v2(m_db);
        m_db = nullptr;
        m_path.clear();
        refuse(error.message);
        m_lastError = error;
        return false;
    }
    m_lastError = {};
    log(QString::fromUtf8(FavouritesSchema::openedLog) + target);
    return true;
}

void LocalDatabaseManager::close()
{
    if (!m_db)
        return;
    sqlite3_close_v2(m_db);
    m_db = nullptr;
    m_path.clear();
    log(QStringLiteral("✅ 数据库已关闭"));
}

void LocalDatabaseManager::setBusyTimeout(int milliseconds)
{
    m_busyTimeoutMs = milliseconds;
    if (m_db)
        sqlite3_busy_timeout(m_db, milliseconds);
}

qint64 LocalDatabaseManager::lastInsertRowId() const
{
    return m_db ? sqlite3_last_insert_rowid(m_db) : 0;
}

void LocalDatabaseManager::recordError()
{
    // With extended result codes on, sqlite3_errcode() answers the extended code too; the primary is its low byte.
    const int extended = sqlite3_extended_errcode(m_db);
    m_lastError = {QString::fromUtf8(sqlite3_errmsg(m_db)), extended & 0xff, extended};
}

bool LocalDatabaseManager::runQuietly(const char* sql)
{
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(m_db, sql, -1, &raw, nullptr) != SQLITE_OK) {
        recordError();
        return false;
    }
    StatementPtr statement(raw, &sqlite3_finalize);
    int code = SQLITE_ROW;
    while (code == SQLITE_ROW)
        code = sqlite3_step(statement.get());
    if (code != SQLITE_DONE) {
        recordError();
        return false;
    }
    return true;
}

sqlite3_stmt* LocalDatabaseManager::prepare(const QString& sql, const QVariantList& parameters)
{
    if (m_debugSQLEnabled)
        log(QStringLiteral("   SQL: ") + sql);
    if (!m_db) {
        m_lastError = {QStringLiteral("database is not open"), SQLITE_MISUSE, SQLITE_MISUSE};
        log(QStringLiteral("❌ SQL 准备失败: ") + m_lastError.message);
        return nullptr;
    }
    sqlite3_stmt* raw = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    if (sqlite3_prepare_v2(m_db, utf8.constData(), int(utf8.size()), &raw, nullptr) != SQLITE_OK) {
        recordError();
        log(QStringLiteral("❌ SQL 准备失败: ") + m_lastError.message);
        sqlite3_finalize(raw);
        return nullptr;
    }
    StatementPtr statement(raw, &sqlite3_finalize);
    for (int i = 0; i < parameters.size(); ++i) {
        const int code = bindOne(raw, i + 1, parameters.at(i));
        if (code == SQLITE_MISMATCH) {
            m_lastError = {QStringLiteral("unsupported parameter type"), SQLITE_MISMATCH, SQLITE_MISMATCH};
            log(QStringLiteral("⚠️ 未支持的参数类型: ") + describe(parameters.at(i)));
            return nullptr;
        }
        if (code != SQLITE_OK) {
            recordError();
            log(QStringLiteral("❌ SQL 准备失败: ") + m_lastError.message);
            return nullptr;
        }
    }
    return statement.release();
}

bool LocalDatabaseManager::execute(const QString& sql, const QVariantList& parameters)
{
    if (!mayWrite() || !step(sql, parameters, [](sqlite3_stmt*) {}))
        return false;
    const int changed = sqlite3_changes(m_db);
    if (changed == 0)
        log(QStringLiteral("⚠️ SQL 执行成功但没有行被影响: ") + sql);
    else
        log(QStringLiteral("✅ SQL 执行成功，影响了 %1 行").arg(changed));
    return true;
}

std::optional<QList<LocalDatabaseManager::Row>> LocalDatabaseManager::query(const QString& sql,
                                                                           const QVariantList& parameters)
{
    QStringList names;
    QList<Row> rows;
    const bool ok = step(sql, parameters, [&](sqlite3_stmt* statement) {
        const int columns = sqlite3_column_count(statement);
        if (names.isEmpty()) {
            for (int c = 0; c < columns; ++c)
                names << QString::fromUtf8(sqlite3_column_name(statement, c));
        }
        Row row;
        for (int c = 0; c < columns; ++c)
            row.insert(names.at(c), columnValue(statement, c));
        rows.append(std::move(row));
    });
    if (!ok)
        return std::nullopt;
    return rows;
}

bool LocalDatabaseManager::queryEach(const QString& sql, const QVariantList& parameters,
                                     const std::function<void(const QVariantList& values)>& row)
{
    QVariantList values;
    return step(sql, parameters, [&](sqlite3_stmt* statement) {
        const int columns = sqlite3_column_count(statement);
        values.resize(columns);
        for (int c = 0; c < columns; ++c)
            values[c] = columnValue(statement, c);
        row(values);
    });
}

bool LocalDatabaseManager::step(const QString& sql, const QVariantList& parameters,
                                const std::function<void(sqlite3_stmt*)>& row)
{
    StatementPtr statement(prepare(sql, parameters), &sqlite3_finalize);
    if (!statement)
        return false;
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(statement.get())) == SQLITE_ROW)
        row(statement.get());
    if (code != SQLITE_DONE) {
        recordError();
        log(QStringLiteral("❌ SQL 执行失败: %1 (错误代码: %2, 扩展错误代码: %3)")
                .arg(m_lastError.message)
                .arg(m_lastError.code)
                .arg(m_lastError.extendedCode));
        return false;
    }
    m_lastError = {};
    return true;
}

bool LocalDatabaseManager::checkIntegrity()
{
    if (!m_db) {
        m_lastError = {QStringLiteral("database is not open"), SQLITE_MISUSE, SQLITE_MISUSE};
        return false;
    }
    if (m_integrity == Integrity::intact)
        return true;
    if (m_integrity == Integrity::damaged) {
        m_lastError = m_damage;
        return false;
    }
    QStringList findings;
    const bool ran = step(QStringLiteral("PRAGMA quick_check;"), {}, [&](sqlite3_stmt* statement) {
        findings << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)));
    });
    if (ran && findings == QStringList{QStringLiteral("ok")}) {
        m_integrity = Integrity::intact;
        return true;
    }
    // A check that could not run for another reason (a lock, the disk) says nothing about the file.
    if (ran || m_lastError.code == SQLITE_CORRUPT || m_lastError.code == SQLITE_NOTADB) {
        m_integrity = Integrity::damaged;
        const QString finding = ran ? findings.value(0) : m_lastError.message;
        m_lastError = m_damage = {QStringLiteral("database disk image is malformed (%1)").arg(finding),
                                  SQLITE_CORRUPT, SQLITE_CORRUPT};
        log(QStringLiteral("❌ 数据库已损坏: ") + finding);
    }
    return false;
}

bool LocalDatabaseManager::mayWrite()
{
    if (!m_db || checkIntegrity())
        return true; // not open: the statement itself reports that
    if (m_integrity == Integrity::damaged)
        log(QStringLiteral("❌ 数据库已损坏，不写入: ") + m_path);
    return false;
}

bool LocalDatabaseManager::runTransaction(const std::function<bool()>& body, bool* began)
{
    *began = runQuietly("BEGIN IMMEDIATE;");
    if (!*began)
        return false;
    if (body() && runQuietly("COMMIT;"))
        return true;
    const DatabaseError cause = m_lastError;
    runQuietly("ROLLBACK;");
    m_lastError = cause;
    return false;
}

bool LocalDatabaseManager::inTransaction(const std::function<bool()>& body)
{
    if (!m_db || !mayWrite()) {
        if (!m_db)
            m_lastError = {QStringLiteral("database is not open"), SQLITE_MISUSE, SQLITE_MISUSE};
        return false;
    }
    // SQLite's own busy wait is not fair: a writer can sleep through every moment the lock was free while
    // others take it. Starting over after a randomised pause gives every process its turn.
    bool began = false;
    for (int attempt = 1;; ++attempt) {
        if (runTransaction(body, &began))
            return true;
        const bool busy = m_lastError.code == SQLITE_BUSY || m_lastError.code == SQLITE_LOCKED;
        if (!busy || attempt >= busyAttempts || m_busyTimeoutMs == 0)
            break;
        const int pauseMs = (10 << attempt) / 2 + int(QRandomGenerator::global()->bounded(10 << attempt));
        log(QStringLiteral("⚠️ 数据库被占用，%1 ms 后重试 (第 %2 次)")
                .arg(pauseMs)
                .arg(attempt));
        QThread::msleep(pauseMs);
    }
    // A failed statement of `body` has said why already.
    if (!began)
        log(QStringLiteral("❌ SQL 执行失败: %1 (错误代码: %2, 扩展错误代码: %3)")
                .arg(m_lastError.message)
                .arg(m_lastError.code)
                .arg(m_lastError.extendedCode));
    return false;
}

} // namespace lumaro::library
