// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourTable.h"

#include "library/FavouritesSchema.h"

#include <sqlite3.h>

namespace lumaro::library {

namespace {

constexpr std::string_view kColumns =
    "SELECT id, file_path, file_name, is_favour, favour_type, created_at, updated_at FROM favourites ";

// Columns in the order of kColumns.
FavourRow rowFrom(sqlite3_stmt* statement)
{
    FavourRow row;
    row.id = sqlite3_column_int64(statement, 0);
    row.filePath = StoreSession::text(statement, 1);
    row.fileName = StoreSession::text(statement, 2);
    row.isFavour = sqlite3_column_int64(statement, 3) != 0;
    if (sqlite3_column_type(statement, 4) != SQLITE_NULL)
        row.favourType = StoreSession::text(statement, 4);
    row.createdAt = sqlite3_column_double(statement, 5);
    row.updatedAt = sqlite3_column_double(statement, 6);
    return row;
}

StoreValue typeValue(const std::optional<std::string>& type)
{
    return type ? StoreValue{*type} : StoreValue{};
}

} // namespace

FavourTable::FavourTable(StoreSession& session, LogSink log)
    : m_session(session)
    , m_log(std::move(log))
{
}

std::string FavourTable::fileNameOf(const std::string& cleanPath)
{
    const size_t slash = cleanPath.rfind('/');
    return slash == std::string::npos ? cleanPath : cleanPath.substr(slash + 1);
}

bool FavourTable::isSetUp()
{
    const auto exists = [this](std::string_view query, std::string_view name) {
        bool found = false;
        return m_session.read(query, {std::string(name)}, [&](sqlite3_stmt*) { found = true; }) && found;
    };
    return exists(FavouritesSchema::tableQuery, FavouritesSchema::table) &&
           exists(FavouritesSchema::indexQuery, FavouritesSchema::nameIndex);
}

std::optional<std::vector<FavourRow>> FavourTable::select(std::string_view clause, const StoreValues& parameters)
{
    std::vector<FavourRow> rows;
    if (!m_session.read(std::string(kColumns) + std::string(clause), parameters,
                        [&](sqlite3_stmt* statement) { rows.push_back(rowFrom(statement)); }))
        return std::nullopt;
    return rows;
}

std::optional<FavourRow> FavourTable::insert(const FavourRow& row)
{
    const bool inserted = m_session.execute(
        "INSERT INTO favourites (file_path, file_name, is_favour, favour_type, created_at, updated_at)\n"
        "VALUES (?, ?, ?, ?, ?, ?);",
        {row.filePath, row.fileName, std::int64_t(row.isFavour ? 1 : 0), typeValue(row.favourType), row.createdAt,
         row.updatedAt});
    if (!inserted) {
        m_log("❌ [DB] 插入失败: " + row.filePath + " (" + m_session.lastError().message + ")");
        return std::nullopt;
    }
    FavourRow stored = row;
    stored.id = m_session.lastInsertRowId();
    return stored;
}

bool FavourTable::update(const FavourRow& row, const std::string& givenPath)
{
    const bool cleaned =
        m_session.execute("DELETE FROM favourites WHERE file_path = ? AND id != ?;", {givenPath, row.id})
        && m_session.execute("DELETE FROM favourites WHERE (file_path = ? OR file_path = '') AND id != ?;",
                             {row.filePath, row.id});
    if (!cleaned
        || !m_session.execute("UPDATE favourites\nSET file_path = ?, file_name = ?, is_favour = ?, favour_type = ?, "
                              "updated_at = ?\nWHERE id = ?;",
                              {row.filePath, row.fileName, std::int64_t(row.isFavour ? 1 : 0),
                               typeValue(row.favourType), row.updatedAt, row.id})) {
        m_log("❌ [DB] 更新失败: " + row.filePath + " (" + m_session.lastError().message + ")");
        return false;
    }
    m_log("✅ [DB] 更新成功: " + row.filePath);
    logSameName(row);
    return true;
}

void FavourTable::logSameName(const FavourRow& row)
{
    std::vector<std::string> lines;
    const bool read = m_session.read(
        "SELECT id, file_path, is_favour, favour_type FROM favourites WHERE file_name = ?;", {row.fileName},
        [&](sqlite3_stmt* statement) {
            lines.push_back("   id=" + StoreSession::text(statement, 0) + " file_path=" +
                            StoreSession::text(statement, 1) + " is_favour=" + StoreSession::text(statement, 2) +
                            " favour_type=" + StoreSession::text(statement, 3));
        });
    if (!read) {
        m_log("⚠️ [DB] 更新后查询失败: " + m_session.lastError().message);
        return;
    }
    m_log("📋 [DB] " + std::to_string(lines.size()) + " 条同名记录:");
    m_log("   查询路径: " + row.filePath);
    for (const std::string& line : lines)
        m_log(line);
}

FavourTable::Change FavourTable::change(const std::string& givenPath, const std::string& cleanPath, double now,
                                        const std::function<void(FavourRow&)>& apply,
                                        const std::function<std::optional<FavourRow>()>& fresh)
{
    Change outcome;
    outcome.ok = m_session.inTransaction([&] {
        outcome = {};
        std::vector<std::string> storedPaths;
        if (!m_session.read("SELECT id, file_path FROM favourites WHERE file_path = ? OR file_path = ?;",
                            {givenPath, cleanPath},
                            [&](sqlite3_stmt* statement) { storedPaths.push_back(StoreSession::text(statement, 1)); }))
            return false;
        if (storedPaths.empty()) {
            auto row = fresh();
            if (!row)
                return true; // Nothing stored and nothing to store.
            row->filePath = cleanPath;
            row->fileName = fileNameOf(cleanPath);
            row->createdAt = row->updatedAt = now;
            return (outcome.saved = insert(*row)).has_value();
        }
        // Keep the row already in the cleaned form when both forms are stored; the other one is merged away.
        std::string keeper = storedPaths.front();
        for (const std::string& path : storedPaths) {
            if (path == cleanPath)
                keeper = path;
        }
        const auto kept = select("WHERE file_path = ?;", {keeper});
        if (!kept || kept->empty())
            return false;
        FavourRow row = kept->front();
        outcome.wasStored = true;
        apply(row);
        row.filePath = cleanPath;
        row.fileName = fileNameOf(cleanPath);
        row.updatedAt = now;
        if (!update(row, givenPath))
            return false;
        outcome.saved = row;
        return true;
    });
    if (!outcome.ok)
        outcome.saved.reset();
    return outcome;
}

FavourTable::Change FavourTable::setFavour(const std::string& givenPath, const std::string& cleanPath, double now,
                                           bool isFavour)
{
    return change(
        givenPath, cleanPath, now, [isFavour](FavourRow& row) { row.isFavour = isFavour; },
        [isFavour]() -> std::optional<FavourRow> {
            if (!isFavour)
                return std::nullopt;
            FavourRow row;
            row.isFavour = true;
            return row;
        });
}

FavourTable::Change FavourTable::setType(const std::string& givenPath, const std::string& cleanPath, double now,
                                         const std::optional<std::string>& type)
{
    return change(
        givenPath, cleanPath, now,
        [&type](FavourRow& row) {
            row.favourType = type;
            if (type)
                row.isFavour = true;
        },
        [&type]() -> std::optional<FavourRow> {
            if (!type)
                return std::nullopt;
            FavourRow row;
            row.isFavour = true;
            row.favourType = type;
            return row;
        });
}

} // namespace lumaro::library
