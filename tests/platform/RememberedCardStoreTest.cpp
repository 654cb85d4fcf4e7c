// SPDX-License-Identifier: GPL-3.0-or-later
// A cards.db left damaged, cut short or written by another program: refused with a reason and left as it was,
// or read without trusting what it holds.
#include "platform/volumes/RememberedCardStore.h"

#include "tests/support/TempFolder.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <functional>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

namespace {

const CardFileIdentity kFile{QStringLiteral("DCIM/100CANON/IMG_0001.JPG"), 8 << 20, 1700000000000, {}};

void execute(const QString& path, const char* sql)
{
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &db), SQLITE_OK);
    char* message = nullptr;
    EXPECT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, &message), SQLITE_OK) << (message ? message : "");
    sqlite3_free(message);
    sqlite3_close(db);
}

// A store with one card, one unfinished import and one file, in rollback-journal form (as after a
// checkpoint).
QString storeWithOneFile(TempFolder& data)
{
    const QString path = data.filePath(QStringLiteral("cards.db"));
    {
        RememberedCardStore store(path);
        EXPECT_TRUE(store.open());
        const auto card = store.remember({0, QStringLiteral("uuid:1234"), {}, QStringLiteral("EOS_DIGITAL")});
        const auto import = store.beginImport(*card, QStringLiteral("/roll01"), QDateTime::currentDateTime());
        EXPECT_TRUE(store.recordFile(*import, *card, kFile, QStringLiteral("/roll01/JPG/IMG_0001.JPG")));
    }
    execute(path, "PRAGMA journal_mode = DELETE;");
    return path;
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

TEST(RememberedCardStore, ADamagedOrForeignFileIsRefusedWithAReasonAndLeftAsItWas)
{
    const struct
    {
        const char* name;
        std::function<void(const QString&)> spoil;
    } cases[] = {
        {"cut short", [](const QString& path) { QFile(path).resize(QFileInfo(path).size() / 2 + 100); }},
        {"a page of garbage",
         [](const QString& path) {
             QFile file(path);
             ASSERT_TRUE(file.open(QIODevice::ReadWrite));
             file.seek(file.size() - 4096);
             file.write(QByteArray(4096, '\x5a'));
         }},
        {"another program's layout",
         [](const QString& path) {
             QFile::remove(path);
             execute(path, "CREATE TABLE cards (id INTEGER PRIMARY KEY, name TEXT);");
         }},
        {"a trigger that drops records",
         [](const QString& path) {
             execute(path, "CREATE TRIGGER forget AFTER INSERT ON imported_files BEGIN DELETE FROM "
                           "imported_files; END;");
         }},
        {"an imports table where an import cannot be unfinished",
         [](const QString& path) {
             execute(path,
                     "DROP TABLE imports; CREATE TABLE imports (id INTEGER PRIMARY KEY AUTOINCREMENT, "
                     "card_id INTEGER NOT NULL REFERENCES cards(id), roll TEXT NOT NULL, started_at REAL "
                     "NOT NULL, finished_at REAL NOT NULL DEFAULT '');");
         }},
        {"a cards table whose first import is never empty",
         [](const QString& path) {
             execute(path,
                     "DROP TABLE cards; CREATE TABLE cards (id INTEGER PRIMARY KEY "
                     "AUTOINCREMENT, card_key TEXT NOT NULL UNIQUE, volume_uuid TEXT NOT NULL DEFAULT '', "
                     "volume_label TEXT NOT NULL DEFAULT '', camera_make TEXT NOT NULL DEFAULT '', "
                     "camera_model TEXT NOT NULL DEFAULT '', camera_serial TEXT NOT NULL DEFAULT '', "
                     "first_import REAL NOT NULL DEFAULT 0, last_import REAL);");
         }},
        {"a files table without its key",
         [](const QString& path) {
             execute(path, "DROP TABLE imported_files; CREATE TABLE imported_files (card_id, path_on_card, "
                           "size, modified_ms, capture_time, import_id, destination);");
         }},
    };
    for (const auto& c : cases) {
        TempFolder data;
        const QString path = storeWithOneFile(data);
        c.spoil(path);
        const QByteArray before = bytesOf(path);

        RememberedCardStore store(path);
        QString error;
        EXPECT_FALSE(store.open(&error)) << c.name;
        EXPECT_FALSE(error.isEmpty()) << c.name;
        EXPECT_EQ(bytesOf(path), before) << c.name;
    }
}

TEST(RememberedCardStore, AMissingTableIsMadeAgainAndTheRestIsKept)
{
    TempFolder data;
    const QString path = storeWithOneFile(data);
    execute(path, "DROP TABLE imported_files;");

    RememberedCardStore store(path);
    ASSERT_TRUE(store.open());
    const auto card = store.card(QStringLiteral("uuid:1234"));
    ASSERT_TRUE(card);
    EXPECT_TRUE(store.importedFileKeys(card->id).isEmpty());
    const auto import = store.unfinishedImport(card->id);
    ASSERT_TRUE(import);
    EXPECT_TRUE(store.recordFile(import->id, card->id, kFile, QStringLiteral("/roll01/JPG/IMG_0001.JPG")));
    EXPECT_EQ(store.destinations(import->id).value(kFile.pathOnCard),
              QStringLiteral("/roll01/JPG/IMG_0001.JPG"));
}

// Times are stored as seconds in a REAL column; a value past any calendar must not turn into a date.
TEST(RememberedCardStore, ATimeBeyondAnyCalendarReadsAsNoTime)
{
    TempFolder data;
    const QString path = storeWithOneFile(data);
    execute(path, "UPDATE cards SET first_import = 1e303, last_import = -1e303;");

    RememberedCardStore store(path);
    ASSERT_TRUE(store.open());
    const auto card = store.card(QStringLiteral("uuid:1234"));
    ASSERT_TRUE(card);
    EXPECT_FALSE(card->firstImport.isValid());
    EXPECT_FALSE(card->lastImport.isValid());
}
