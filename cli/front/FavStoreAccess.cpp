// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/FavStoreAccess.h"
#include "cli/front/WriteAll.h"

#include "library/FavouritesSchema.h"
#include "platform/files/XdgHomes.h"

namespace lumaro::cli {

using Schema = library::FavouritesSchema;

std::optional<std::string> plainFavouritesPath()
{
    const auto dataDir = platform::XdgHomes::plainAppDir(platform::XdgHomes::Home::data);
    if (!dataDir)
        return std::nullopt;
    return *dataDir + "/" + std::string(Schema::databaseName);
}

std::string openedStoreLogLines(const std::string& databasePath)
{
    return logLine(Schema::databaseLogTag, std::string(Schema::openedLog) + databasePath) +
           logLine(Schema::favouritesLogTag, Schema::tableExistsLog);
}

} // namespace lumaro::cli
