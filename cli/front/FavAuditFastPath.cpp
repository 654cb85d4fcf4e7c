// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/FavAuditFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/FavStoreAccess.h"
#include "cli/front/JsonText.h"
#include "cli/front/LineEscape.h"
#include "cli/front/WriteAll.h"

#include "library/FavourTable.h"
#include "library/FavouritesSchema.h"
#include "library/StoreSession.h"
#include "platform/files/PathKind.h"
#include "platform/files/Utf8Sequence.h"

#include <sqlite3.h>

#include <string>
#include <string_view>
#include <vector>

namespace lumaro::cli {

namespace {

using library::FavouritesSchema;

std::optional<long long> emptyPathCount(library::StoreSession& session)
{
    std::optional<long long> count;
    const bool read = session.read(FavouritesSchema::emptyPathCountQuery, {}, [&](sqlite3_stmt* statement) {
        count = sqlite3_column_int64(statement, 0);
    });
    return read ? count : std::nullopt;
}

std::string printed(const FavReading& request, long long empty, const std::vector<std::string>& missing)
{
    std::string out;
    if (request.json) {
        out = "{\"emptyPath\":" + std::to_string(empty) + ",\"missing\":[";
        for (size_t i = 0; i < missing.size(); ++i)
            out += (i ? "," : "") + jsonString(missing[i]);
        return out + "],\"removed\":0}\n";
    }
    out = "records without a path: " + std::to_string(empty) + "\n";
    for (const std::string& path : missing) {
        out += "missing: ";
        appendEscapedLineBytes(out, path);
        out += '\n';
    }
    return out;
}

} // namespace

std::optional<int> FavAuditFastPath::run(int count, char* words[])
{
    const auto request = plainFavReading(count, words, "audit");
    const auto databasePath = request ? plainFavouritesPath() : std::nullopt;
    if (!databasePath)
        return std::nullopt;
    std::string said;
    const auto sink = [&](std::string_view tag) {
        return [&, tag](const std::string& message) { said += logLine(tag, message); };
    };
    library::StoreSession session(sink(FavouritesSchema::databaseLogTag));
    library::FavourTable table(session, sink(FavouritesSchema::favouritesLogTag));
    if (!session.open(*databasePath, false) || !table.isSetUp())
        return std::nullopt;
    said = openedStoreLogLines(*databasePath);
    const auto empty = emptyPathCount(session);
    const auto favourites = empty ? table.select(FavouritesSchema::favouritesClause, {}) : std::nullopt;
    if (!favourites)
        return std::nullopt; // lumaro-cli-light says why
    said += logLine(FavouritesSchema::favouritesLogTag, FavouritesSchema::emptyPathCountLog(*empty));
    std::vector<std::string> missing;
    for (const library::FavourRow& row : *favourites) {
        if (!platform::isValidUtf8(row.filePath))
            return std::nullopt;
        if (!row.filePath.empty() && !platform::PathKind::exists(row.filePath.c_str()))
            missing.push_back(row.filePath);
    }
    if (!request->quiet)
        writeAll(stderr, said);
    writeAll(stdout, printed(*request, *empty, missing));
    return exitOk;
}

} // namespace lumaro::cli
