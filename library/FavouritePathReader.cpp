// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavouritePathReader.h"

#include "library/FavourTable.h"
#include "library/FavouritesSchema.h"
#include "library/StoreSession.h"

#include <sqlite3.h>

namespace lumaro::library {

bool FavouritePathReader::readEach(const std::string& databasePath,
                                   const std::function<void(std::string_view path)>& path)
{
    const auto unheard = [](const std::string&) {};
    StoreSession session(unheard);
    if (!session.open(databasePath, false) || !FavourTable(session, unheard).isSetUp())
        return false;
    return session.read(FavouritesSchema::favouritePathsQuery, {}, [&](sqlite3_stmt* statement) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        path(text ? std::string_view(text, size_t(sqlite3_column_bytes(statement, 0))) : std::string_view());
    });
}

} // namespace lumaro::library
