// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/FavListFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/FavStoreAccess.h"
#include "cli/front/JsonText.h"
#include "cli/front/LineEscape.h"
#include "cli/front/WriteAll.h"

#include "library/FavourTable.h"
#include "library/FavourTypeNames.h"
#include "library/FavouritePathReader.h"
#include "library/FavouritesSchema.h"
#include "library/StoreSession.h"
#include "platform/files/Utf8Sequence.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace lumaro::cli {

namespace {

using library::FavouritesSchema;

std::optional<std::string> linesOfPaths(const std::string& databasePath)
{
    std::string out;
    const bool read = library::FavouritePathReader::readEach(databasePath, [&](std::string_view path) {
        appendEscapedLineBytes(out, path);
        out += '\n';
    });
    return read ? std::optional(out) : std::nullopt;
}

// As FavourManager's records: a type stored in a spelling only Qt's case folding reads, or a path that is
// not UTF-8, is left to it.
std::optional<std::string> jsonObject(const library::FavourRow& row)
{
    std::string type = "null";
    if (row.favourType) {
        const auto known = library::favourTypeFromAscii(*row.favourType);
        if (!known)
            return std::nullopt;
        type = jsonString(library::storedTypeText(*known));
    }
    if (!platform::isValidUtf8(row.filePath) || !platform::isValidUtf8(row.fileName))
        return std::nullopt;
    return "{\"createdAt\":" + jsonNumber(row.createdAt) + ",\"name\":" + jsonString(row.fileName) +
           ",\"path\":" + jsonString(row.filePath) + ",\"type\":" + type +
           ",\"updatedAt\":" + jsonNumber(row.updatedAt) + "}";
}

std::optional<std::string> jsonArrayOfRecords(const std::string& databasePath)
{
    const auto unheard = [](const std::string&) {};
    library::StoreSession session(unheard);
    library::FavourTable table(session, unheard);
    if (!session.open(databasePath, false) || !table.isSetUp())
        return std::nullopt;
    const auto rows = table.select(FavouritesSchema::favouritesClause, {});
    if (!rows)
        return std::nullopt;
    std::string out = "[";
    for (const library::FavourRow& row : *rows) {
        const auto object = jsonObject(row);
        if (!object)
            return std::nullopt;
        out += (out.size() > 1 ? "," : "") + *object;
    }
    return out + "]\n";
}

} // namespace

std::optional<int> FavListFastPath::run(int count, char* words[])
{
    const auto request = plainFavReading(count, words, "list");
    const auto path = request ? plainFavouritesPath() : std::nullopt;
    if (!path)
        return std::nullopt;
    // Nothing is printed before the whole list was read: a store that fails part-way goes to
    // lumaro-cli-light, which says why.
    const auto out = request->json ? jsonArrayOfRecords(*path) : linesOfPaths(*path);
    if (!out)
        return std::nullopt;
    if (!request->quiet)
        writeAll(stderr, openedStoreLogLines(*path));
    writeAll(stdout, *out);
    return exitOk;
}

} // namespace lumaro::cli
