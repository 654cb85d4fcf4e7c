// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/LocalDatabaseManager.h"

#include "library/FavouritesSchema.h"

#include "platform/files/FileNameCodec.h"

#include "platform/AppPaths.h"
#include "platform/Log.h"

#include <QDir>
#include <QFileInfo>

#include <sqlite3.h>


namespace lumaro::library {

namespace {

const QString kTag = QString::fromUtf8(FavouritesSchema::databaseLogTag);

void log(const QString& message)
{
    platform::Log::line(kTag, message);
}

QString describe(const QVariant& value)
{
    const QString text = value.toString();
    if (!text.isEmpty())
        return text;
    return QString::fromLatin1(value.typeName() ? value.typeName() : "unknown");
}

std::optional<StoreValue> storeValue(const QVariant& value)
{
    if (value.isNull() || !value.isValid())
        return StoreValue{};
    switch (value.typeId()) {
    case QMetaType::QString:
        // A path may hold a name that is not UTF-8; its bytes are stored as they are and read back the same.
        return StoreValue{platform::FileNameCodec::encode(value.toString()).toStdString()};
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return StoreValue{std::int64_t(value.toLongLong())};
    case QMetaType::Double:
    case QMetaType::Float:
        return StoreValue{value.toDouble()};
    default:
        return std::nullopt;
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
    : m_session([](const std::string& message) { log(QString::fromStdString(message)); })
    , m_databaseName(std::move(databaseName))
{
}

LocalDatabaseManager::~LocalDatabaseManager() = default;

QString LocalDatabaseManager::defaultPath() const
{
    return QDir(platform::AppPaths::dataDir()).filePath(m_databaseName);
}

DatabaseError LocalDatabaseManager::lastError() const
{
    const StoreError& error = m_session.lastError();
    return {QString::fromStdString(error.message), error.code, error.extendedCode};
}

bool LocalDatabaseManager::open(const QString& path)
{
    close();
    const QString target = path.isEmpty() ? defaultPath() : path;
    const auto refuse = [&](const QString& message) {
        log(QStringLiteral("❌ 无法打开数据库: ") + message);
        log(QStringLiteral("   数据库路径: ") + target);
        return false;
    };
    if (path.isEmpty() && !QDir().mkpath(QFileInfo(target).absolutePath())) {
        const QString message = QStringLiteral("cannot create the folder ") + QFileInfo(target).absolutePath();
        m_session.setLastError({message.toStdString(), SQLITE_CANTOPEN, SQLITE_CANTOPEN});
        return refuse(message);
    }
    if (!m_session.open(platform::FileNameCodec::encode(target).toStdString(), true))
        return refuse(lastError().message);
    log(QString::fromUtf8(FavouritesSchema::openedLog) + target);
    return true;
}

void LocalDatabaseManager::close()
{
    m_session.close();
}

QString LocalDatabaseManager::path() const
{
    return platform::FileNameCodec::decode(QByteArray::fromStdString(m_session.path()));
}

std::optional<StoreValues> LocalDatabaseManager::storeValues(const QVariantList& parameters)
{
    StoreValues values;
    values.reserve(size_t(parameters.size()));
    for (const QVariant& parameter : parameters) {
        auto value = storeValue(parameter);
        if (!value) {
            m_session.setLastError({"unsupported parameter type", SQLITE_MISMATCH, SQLITE_MISMATCH});
            log(QStringLiteral("⚠️ 未支持的参数类型: ") + describe(parameter));
            return std::nullopt;
        }
        values.push_back(std::move(*value));
    }
    return values;
}

bool LocalDatabaseManager::execute(const QString& sql, const QVariantList& parameters)
{
    const auto values = storeValues(parameters);
    return values && m_session.execute(sql.toStdString(), *values);
}

std::optional<QList<LocalDatabaseManager::Row>> LocalDatabaseManager::query(const QString& sql,
                                                                           const QVariantList& parameters)
{
    const auto values = storeValues(parameters);
    if (!values)
        return std::nullopt;
    QStringList names;
    QList<Row> rows;
    const bool ok = m_session.read(sql.toStdString(), *values, [&](sqlite3_stmt* statement) {
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
    const auto values = storeValues(parameters);
    if (!values)
        return false;
    QVariantList columnValues;
    return m_session.read(sql.toStdString(), *values, [&](sqlite3_stmt* statement) {
        const int columns = sqlite3_column_count(statement);
        columnValues.resize(columns);
        for (int c = 0; c < columns; ++c)
            columnValues[c] = columnValue(statement, c);
        row(columnValues);
    });
}

} // namespace lumaro::library
