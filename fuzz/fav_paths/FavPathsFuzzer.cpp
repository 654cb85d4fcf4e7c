// SPDX-License-Identifier: GPL-3.0-or-later
// Favourite paths as scripts hand them to `lumaro-cli fav` (any bytes, relative forms, odd separators): each
// line is marked, typed, looked up and unmarked in a real favourites database.
#include "fuzz/FuzzScratch.h"
#include "library/FavourManager.h"
#include "platform/fakes/MemorySettingsStore.h"

using namespace lumaro;

namespace {

library::FavourManager& manager()
{
    static platform::MemorySettingsStore settings;
    static library::FavourManager* instance = [] {
        auto* created = new library::FavourManager(settings);
        created->open(fuzz::FuzzScratch::path(QStringLiteral("fav.db")), false);
        return created;
    }();
    return *instance;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    library::FavourManager& favourites = manager();
    const QList<QByteArray> lines = fuzz::bytesOf(data, size).split('\n');
    for (qsizetype i = 0; i < lines.size() && i < 8; ++i) {
        const QString path = QString::fromUtf8(lines.at(i));
        (void)favourites.setFavour(path, true);
        (void)favourites.setType(path,
                                 library::allFavourTypes.at(size_t(i) % library::allFavourTypes.size()));
        (void)favourites.find(path);
        (void)favourites.setType(path, std::nullopt);
        (void)favourites.setFavour(path, false);
    }
    (void)favourites.favourites();
    (void)favourites.audit();
    return 0;
}
