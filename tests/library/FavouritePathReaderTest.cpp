// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli lists favourites through FavouritePathReader without Qt, and leaves every store it does not read
// to lumaro-cli-light: the reader must see what FavourManager wrote, and must refuse, untouched, what the
// manager would first have to make or repair.
#include "library/FavouritePathReader.h"

#include "library/FavourManager.h"
#include "library/LocalDatabaseManager.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "platform/files/FileNameCodec.h"
#include "tests/support/TempFolder.h"

#include <QFile>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using lumaro::library::FavouritePathReader;
using lumaro::testing::TempFolder;

namespace {

std::string bytesOf(const QString& path)
{
    return lumaro::platform::FileNameCodec::encode(path).toStdString();
}

struct RefusedStore
{
    const char* name;
    // Leaves a store at the path, or nothing.
    std::function<void(const QString& path)> make;
};

class FavouritePathReaderRefuses : public ::testing::TestWithParam<RefusedStore>
{
};

} // namespace

TEST(FavouritePathReader, ReadsTheFavouritesNewestChangeFirstAsTheirStoredBytes)
{
    TempFolder folder;
    const QString path = folder.filePath(QStringLiteral("fav.db"));
    double now = 100;
    lumaro::platform::MemorySettingsStore settings;
    lumaro::library::FavourManager manager(settings, [&] { return now += 1; });
    ASSERT_TRUE(manager.open(path));
    // A Latin-1 name: its byte is kept, not replaced.
    const QString latin1 =
        lumaro::platform::FileNameCodec::decode(QFile::encodeName(folder.path()) + "/caf\xe9.jpg");
    const QString first = folder.filePath(QStringLiteral("first.jpg"));
    const QString unmarked = folder.filePath(QStringLiteral("unmarked.jpg"));
    for (const QString& picture : {first, latin1, unmarked})
        ASSERT_TRUE(manager.setFavour(picture, true));
    ASSERT_TRUE(manager.setFavour(unmarked, false));
    ASSERT_TRUE(manager.setFavour(first, true)); // changed last: listed first

    std::vector<std::string> paths;
    EXPECT_TRUE(FavouritePathReader::readEach(bytesOf(path),
                                              [&](std::string_view read) { paths.emplace_back(read); }));
    EXPECT_EQ(paths, (std::vector<std::string>{bytesOf(first), bytesOf(latin1)}));
}

TEST_P(FavouritePathReaderRefuses, AStoreThatOpeningWouldFirstMakeOrRepair)
{
    TempFolder folder;
    const QString path = folder.filePath(QStringLiteral("fav.db"));
    GetParam().make(path);
    const bool existed = QFile::exists(path);
    const QByteArray before = existed ? folder.read(QStringLiteral("fav.db")) : QByteArray();

    bool handedOver = false;
    EXPECT_FALSE(FavouritePathReader::readEach(bytesOf(path), [&](std::string_view) { handedOver = true; }));
    EXPECT_FALSE(handedOver);
    EXPECT_EQ(QFile::exists(path), existed);
    if (existed) {
        EXPECT_EQ(folder.read(QStringLiteral("fav.db")), before);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Stores, FavouritePathReaderRefuses,
    ::testing::Values(RefusedStore{"missing", [](const QString&) {}},
                      RefusedStore{"notADatabase",
                                   [](const QString& path) {
                                       QFile file(path);
                                       ASSERT_TRUE(file.open(QIODevice::WriteOnly));
                                       file.write(QByteArray("my notes, not a database\n").repeated(300));
                                   }},
                      RefusedStore{"anotherProgramsDatabase",
                                   [](const QString& path) {
                                       lumaro::library::LocalDatabaseManager db;
                                       ASSERT_TRUE(db.open(path));
                                       ASSERT_TRUE(
                                           db.execute(QStringLiteral("CREATE TABLE notes (text TEXT);")));
                                   }},
                      RefusedStore{"olderStoreWithoutTheNameIndex",
                                   [](const QString& path) {
                                       {
                                           lumaro::platform::MemorySettingsStore settings;
                                           lumaro::library::FavourManager manager(settings);
                                           ASSERT_TRUE(manager.open(path));
                                       }
                                       lumaro::library::LocalDatabaseManager db;
                                       ASSERT_TRUE(db.open(path));
                                       ASSERT_TRUE(db.execute(QStringLiteral("DROP INDEX idx_file_name;")));
                                   }}),
    [](const auto& info) { return std::string(info.param.name); });
