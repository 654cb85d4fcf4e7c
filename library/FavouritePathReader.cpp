// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavouritePathReader.h"

#include "library/FavouritesSchema.h"
#include "library/StoreConnection.h"

#include <memory>

#include <sqlite3.h>

namespace lumaro::library {

namespace {

using Connection = std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

// Steps `sql` (bound to `text` when given) to its end, handing each row to `row`; false when it failed.
template <typename RowHandler>
bool eachRow(sqlite3* db, std::string_view sql, std::string_view text, RowHandler row)
{
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(db, sql.data(), int(sql.size()), &raw, nullptr) != SQLITE_OK)
        return false;
    const Statement statement(raw, &sqlite3_finalize);
    if (!text.empty() && sqlite3_bind_text(raw, 1, text.data(), int(text.size()), SQLITE_STATIC) != SQLITE_OK)
        return false;
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(raw)) == SQLITE_ROW)
        row(raw);
    return code == SQLITE_DONE;
}

bool hasSchemaObject(sqlite3* db, std::string_view query, std::string_view name)
{
    bool found = false;
    return eachRow(db, query, name, [&](sqlite3_stmt*) { found = true; }) && found;
}

} // namespace

bool FavouritePathReader::readEach(const std::string& databasePath,
                                   const std::function<void(std::string_view path)>& path)
{
    StoreConnection::takeCachePagesWhenNeeded();
    sqlite3* raw = nullptr;
    const int opened = sqlite3_open_v2(databasePath.c_str(), &raw, SQLITE_OPEN_READWRITE, nullptr);
    const Connection db(raw, &sqlite3_close_v2);
    if (opened != SQLITE_OK || !StoreConnection::configure(raw, StoreConnection::defaultBusyTimeoutMs))
        return false;
    using Schema = FavouritesSchema;
    if (!hasSchemaObject(raw, Schema::tableQuery, Schema::table) ||
        !hasSchemaObject(raw, Schema::indexQuery, Schema::nameIndex))
        return false;
    return eachRow(raw, Schema::favouritePathsQuery, {}, [&](sqlite3_stmt* statement) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        path(text ? std::string_view(text, size_t(sqlite3_column_bytes(statement, 0))) : std::string_view());
    });
}

} // namespace lumaro::library
