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

std::optional<FavReading> plainFavReading(int count, char* words[], std::string_view subcommand)
{
    FavReading reading;
    bool named = false;
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "-q" || word == "--quiet")
            reading.quiet = true;
        else if (word == "--json")
            reading.json = true;
        else if (word == subcommand && !named)
            named = true;
        else
            return std::nullopt;
    }
    if (!named)
        return std::nullopt;
    return reading;
}

} // namespace lumaro::cli
