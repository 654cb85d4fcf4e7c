// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourManager.h"

#include "platform/NotificationCenter.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace lumaro::library;
using lumaro::platform::MemorySettingsStore;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

const QString kTag = QStringLiteral("FavourManager - ");

class FavourManagerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        dbPath = folder.filePath(QStringLiteral("fav.db"));
        ASSERT_TRUE(manager.open(dbPath));
        QObject::connect(&lumaro::platform::NotificationCenter::shared(), &lumaro::platform::NotificationCenter::posted,
                         &observer, [this](const QString& name, const QVariantMap& info) {
                             if (name == QStringLiteral("FavourStateChanged"))
                                 posted.append(info);
                         });
    }

    QString picture(const QString& name) { return folder.filePath(QStringLiteral("pictures/") + name); }

    FavourRecord raw(const QString& path, double at)
    {
        FavourRecord record;
        record.filePath = path;
        record.fileName = path.section(QLatin1Char('/'), -1);
        record.isFavour = true;
        record.createdAt = record.updatedAt = at;
        return record;
    }

    // What the table holds, read through a connection of its own.
    QList<QVariantMap> rows()
    {
        LocalDatabaseManager reader;
        reader.open(dbPath);
        return reader.query(QStringLiteral("SELECT * FROM favourites ORDER BY id;")).value_or(QList<QVariantMap>{});
    }

    void addTrigger(const QString& event)
    {
        LocalDatabaseManager other;
        ASSERT_TRUE(other.open(dbPath));
        ASSERT_TRUE(other.execute(QStringLiteral("CREATE TRIGGER refuse BEFORE %1 ON favourites "
                                                 "BEGIN SELECT RAISE(ABORT, 'disk said no'); END;")
                                      .arg(event)));
    }

    TempFolder folder;
    QString dbPath;
    MemorySettingsStore settings;
    double now = 1000;
    FavourManager manager{settings, [this] { return now; }};
    QObject observer;
    QList<QVariantMap> posted;
};

} // namespace

TEST_F(FavourManagerTest, CreatesTheTableWithItsIndexesOnceAndFindsItNextTime)
{
    const auto indexes = manager.dbManager().query(
        QStringLiteral("SELECT name FROM sqlite_master WHERE type='index' AND tbl_name='favourites' AND sql IS NOT NULL;"));
    QSet<QString> names;
    for (const auto& row : *indexes)
        names.insert(row.value(QStringLiteral("name")).toString());
    EXPECT_EQ(names, (QSet<QString>{QStringLiteral("idx_file_path"), QStringLiteral("idx_is_favour"),
                                    QStringLiteral("idx_favour_type"), QStringLiteral("idx_created_at"),
                                    QStringLiteral("idx_file_name")}));
    LogCapture log;
    FavourManager again(settings);
    ASSERT_TRUE(again.open(dbPath));
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("✅ 收藏表已存在")));
    EXPECT_FALSE(log.contains(kTag + QStringLiteral("✅ 收藏表创建成功")));
}

TEST_F(FavourManagerTest, EveryStatementIsWrittenAsTheStoreDefinesIt)
{
    LogCapture log;
    FavourManager fresh(settings, [this] { return now; });
    fresh.setDebugSQLEnabled(true);
    ASSERT_TRUE(fresh.open(folder.filePath(QStringLiteral("other.db"))));
    const QString a = picture(QStringLiteral("a.jpg"));
    ASSERT_TRUE(fresh.setFavour(a, true));
    ASSERT_TRUE(fresh.setFavour(a, false));
    ASSERT_TRUE(fresh.favourites());
    ASSERT_TRUE(fresh.find(a));
    ASSERT_TRUE(fresh.audit());
    ASSERT_TRUE(fresh.remove(fresh.records().constFirst().id));
    const QString columns = QStringLiteral("SELECT id, file_path, file_name, is_favour, favour_type, created_at, updated_at FROM favourites");
    const QStringList expected{
        QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' AND name=?;"),
        QStringLiteral("CREATE TABLE IF NOT EXISTS favourites (\n    id INTEGER PRIMARY KEY AUTOINCREMENT,\n    file_path "
                       "TEXT NOT NULL UNIQUE,\n    file_name TEXT NOT NULL,\n    is_favour INTEGER NOT NULL DEFAULT 0,\n    "
                       "favour_type TEXT,\n    created_at REAL NOT NULL,\n    updated_at REAL NOT NULL\n);"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS idx_file_path ON favourites (file_path);"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS idx_is_favour ON favourites (is_favour);"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS idx_favour_type ON favourites (favour_type);"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS idx_created_at ON favourites (created_at);"),
        columns + QStringLiteral(" ORDER BY created_at DESC;"),
        QStringLiteral("SELECT id, file_path FROM favourites WHERE file_path = ? OR file_path = ?;"),
        QStringLiteral("INSERT INTO favourites (file_path, file_name, is_favour, favour_type, created_at, updated_at)\nVALUES (?, ?, ?, ?, ?, ?);"),
        columns + QStringLiteral(" WHERE file_path = ?;"),
        QStringLiteral("DELETE FROM favourites WHERE file_path = ? AND id != ?;"),
        QStringLiteral("DELETE FROM favourites WHERE (file_path = ? OR file_path = '') AND id != ?;"),
        QStringLiteral("UPDATE favourites\nSET file_path = ?, file_name = ?, is_favour = ?, favour_type = ?, updated_at = ?\nWHERE id = ?;"),
        QStringLiteral("SELECT id, file_path, is_favour, favour_type FROM favourites WHERE file_name = ?;"),
        columns + QStringLiteral(" WHERE is_favour = 1 ORDER BY updated_at DESC;"),
        columns + QStringLiteral(" WHERE file_path = ? AND file_path != '';"),
        QStringLiteral("SELECT COUNT(*) FROM favourites WHERE file_path IS NULL OR file_path = '';"),
        QStringLiteral("DELETE FROM favourites WHERE id = ?;"),
    };
    for (const QString& sql : expected)
        EXPECT_TRUE(log.contains(QStringLiteral("LocalDatabaseManager -    SQL: ") + sql)) << sql.toStdString();
}

TEST_F(FavourManagerTest, TheHeartInsertsOnceThenUpdatesTheSameRow)
{
    const QString a = picture(QStringLiteral("a.jpg"));
    const auto first = manager.setFavour(a, true);
    ASSERT_TRUE(first && first.record);
    EXPECT_EQ(first.record->filePath, a);
    EXPECT_EQ(first.record->fileName, QStringLiteral("a.jpg"));
    EXPECT_EQ(first.record->createdAt, 1000);
    EXPECT_EQ(first.record->updatedAt, 1000);
    now = 2000;
    const auto second = manager.setFavour(a, false);
    ASSERT_TRUE(second && second.record);
    EXPECT_EQ(second.record->id, first.record->id);
    EXPECT_FALSE(second.record->isFavour);
    EXPECT_EQ(second.record->createdAt, 1000);
    EXPECT_EQ(second.record->updatedAt, 2000);
    ASSERT_EQ(rows().size(), 1);
    EXPECT_EQ(rows().constFirst().value(QStringLiteral("is_favour")).toInt(), 0);
    ASSERT_EQ(manager.records().size(), 1);
    EXPECT_EQ(manager.records().constFirst(), *second.record);
}

TEST_F(FavourManagerTest, UnmarkingAPictureWithoutARowWritesNothing)
{
    const auto result = manager.setFavour(picture(QStringLiteral("never.jpg")), false);
    EXPECT_TRUE(result.ok);
    EXPECT_FALSE(result.record);
    EXPECT_TRUE(rows().isEmpty());
    EXPECT_TRUE(posted.isEmpty());
}

TEST_F(FavourManagerTest, FavouritesListNewestChangeFirstWithoutUnmarkedOnes)
{
    const QString a = picture(QStringLiteral("a.jpg")), b = picture(QStringLiteral("b.jpg")),
                  c = picture(QStringLiteral("c.jpg")), d = picture(QStringLiteral("d.jpg"));
    for (const QString& path : {a, b, c, d}) {
        now += 1;
        ASSERT_TRUE(manager.setFavour(path, true));
    }
    now += 1;
    ASSERT_TRUE(manager.setType(a, FavourType::nice));
    now += 1;
    ASSERT_TRUE(manager.setFavour(c, false));
    const auto list = manager.favourites();
    ASSERT_TRUE(list);
    QStringList order;
    for (const auto& record : *list)
        order << record.fileName;
    EXPECT_EQ(order, (QStringList{QStringLiteral("a.jpg"), QStringLiteral("d.jpg"), QStringLiteral("b.jpg")}));
    // The observed list keeps creation order, newest first, like a fresh load.
    const QList<FavourRecord> kept = manager.records();
    ASSERT_TRUE(manager.loadAll());
    EXPECT_EQ(kept, manager.records());
}

TEST_F(FavourManagerTest, ASecondInsertOfThePathFailsOnUniqueAndChangesNothing)
{
    const QString a = picture(QStringLiteral("a.jpg"));
    ASSERT_TRUE(manager.insert(raw(a, 1)));
    const auto before = manager.records();
    const int notices = int(posted.size());
    LogCapture log;
    EXPECT_FALSE(manager.insert(raw(a, 2)));
    EXPECT_EQ(manager.dbManager().lastError().extendedCode, 2067); // SQLITE_CONSTRAINT_UNIQUE
    EXPECT_EQ(log.countStartingWith(kTag + QStringLiteral("❌ [DB] 插入失败: ")), 1);
    EXPECT_EQ(manager.records(), before);
    EXPECT_EQ(posted.size(), notices);
    EXPECT_EQ(rows().size(), 1);
}

TEST_F(FavourManagerTest, UpdateMergesTheOtherWrittenFormAndEmptyPathsIntoOneRow)
{
    const QString clean = picture(QStringLiteral("a.jpg"));
    const QString given = folder.filePath(QStringLiteral("pictures/./x/../a.jpg"));
    const QString other = picture(QStringLiteral("b.jpg"));
    ASSERT_TRUE(manager.insert(raw(given, 1)));
    const auto kept = manager.insert(raw(clean, 2));
    ASSERT_TRUE(manager.insert(raw(QString(), 3)));
    ASSERT_TRUE(manager.insert(raw(other, 4)));
    EXPECT_EQ(manager.audit(), 1);

    LogCapture log;
    now = 10;
    const auto result = manager.setType(given, FavourType::sss);
    ASSERT_TRUE(result && result.record);
    EXPECT_EQ(result.record->id, kept.record->id);
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("✅ [DB] 更新成功: ") + clean));
    const auto table = rows();
    ASSERT_EQ(table.size(), 2);
    EXPECT_EQ(table.at(0).value(QStringLiteral("file_path")).toString(), clean);
    EXPECT_EQ(table.at(0).value(QStringLiteral("favour_type")).toString(), QStringLiteral("SSS"));
    EXPECT_EQ(table.at(1).value(QStringLiteral("file_path")).toString(), other);
    EXPECT_EQ(manager.audit(), 0);
    const QList<FavourRecord> inMemory = manager.records();
    ASSERT_TRUE(manager.loadAll());
    EXPECT_EQ(inMemory, manager.records());
}

TEST_F(FavourManagerTest, ARowStoredOnlyUnderTheGivenFormIsRewrittenInTheCleanedForm)
{
    const QString given = folder.filePath(QStringLiteral("pictures//a.jpg"));
    const auto stored = manager.insert(raw(given, 1));
    ASSERT_TRUE(stored);
    const auto result = manager.setFavour(given, false);
    ASSERT_TRUE(result && result.record);
    EXPECT_EQ(result.record->id, stored.record->id);
    EXPECT_EQ(result.record->filePath, picture(QStringLiteral("a.jpg")));
    EXPECT_EQ(rows().size(), 1);
}

TEST_F(FavourManagerTest, AnEmptyPathIsCountedByTheAuditAndNeverMatched)
{
    ASSERT_TRUE(manager.insert(raw(QString(), 1)));
    LogCapture log;
    EXPECT_EQ(manager.audit(), 1);
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("📊 1 条无效收藏记录（file_path 为空）")));
    const auto found = manager.find(QString());
    EXPECT_TRUE(found.ok);
    EXPECT_FALSE(found.record);
    EXPECT_FALSE(manager.setFavour(QString(), true));
    EXPECT_EQ(manager.removeEmptyPathRecords(), 1);
    EXPECT_EQ(manager.audit(), 0);
    EXPECT_TRUE(manager.records().isEmpty());
}

TEST_F(FavourManagerTest, SameNamedPicturesElsewhereAreListedAfterAnUpdate)
{
    const QString a = picture(QStringLiteral("one/IMG_0001.JPG"));
    const QString b = picture(QStringLiteral("two/IMG_0001.JPG"));
    ASSERT_TRUE(manager.setFavour(a, true));
    ASSERT_TRUE(manager.setFavour(b, true));
    LogCapture log;
    ASSERT_TRUE(manager.setFavour(b, false));
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("📋 [DB] 2 条同名记录:")));
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("   查询路径: ") + b));
}

struct FailingWrite
{
    const char* name;
    const char* event;
    bool stored; // whether the picture already has a row when the write fails
};

class FavourManagerFailure : public FavourManagerTest, public ::testing::WithParamInterface<FailingWrite>
{
};

// The view rolls its button back on a false result; the list it watches and the table must not have moved either.
TEST_P(FavourManagerFailure, AFailedWriteLeavesTableRecordsAndObserversAsTheyWere)
{
    const QString a = picture(QStringLiteral("a.jpg"));
    ASSERT_TRUE(manager.setFavour(picture(QStringLiteral("other.jpg")), true));
    if (GetParam().stored) {
        ASSERT_TRUE(manager.setFavour(a, true));
    }
    // A row the update's clean-up would delete, so a failing DELETE really runs.
    ASSERT_TRUE(manager.insert(raw(QString(), 1)));
    addTrigger(QString::fromUtf8(GetParam().event));
    const auto table = rows();
    const auto records = manager.records();
    const int notices = int(posted.size());
    LogCapture log;
    now = 5000;
    EXPECT_FALSE(manager.setType(a, FavourType::heart));
    EXPECT_FALSE(manager.setFavour(a, !GetParam().stored));
    EXPECT_EQ(rows(), table);
    EXPECT_EQ(manager.records(), records);
    EXPECT_EQ(posted.size(), notices);
    const QString failure = GetParam().stored ? QStringLiteral("❌ [DB] 更新失败: ") : QStringLiteral("❌ [DB] 插入失败: ");
    EXPECT_EQ(log.countStartingWith(kTag + failure), 2);
}

INSTANTIATE_TEST_SUITE_P(Writes, FavourManagerFailure,
                         ::testing::Values(FailingWrite{"insert", "INSERT", false},
                                           FailingWrite{"update", "UPDATE", true},
                                           FailingWrite{"cleanUp", "DELETE", true}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(FavourManagerTest, AToggleThatCannotGetTheWriteLockFailsCleanly)
{
    const QString a = picture(QStringLiteral("a.jpg"));
    LocalDatabaseManager holder;
    ASSERT_TRUE(holder.open(dbPath));
    manager.dbManager().setBusyTimeout(0);
    holder.inTransaction([&] {
        EXPECT_FALSE(manager.setFavour(a, true));
        return true;
    });
    EXPECT_TRUE(manager.records().isEmpty());
    EXPECT_TRUE(manager.setFavour(a, true));
}

TEST_F(FavourManagerTest, EachChangeIsAnnouncedWithThePicture)
{
    const QString a = picture(QStringLiteral("a.jpg"));
    ASSERT_TRUE(manager.setFavour(a, true));
    ASSERT_TRUE(manager.setType(a, FavourType::diamond));
    LogCapture log;
    ASSERT_TRUE(manager.setType(a, std::nullopt));
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("✅ 收藏类型已清除")));
    ASSERT_TRUE(manager.remove(manager.records().constFirst().id));
    ASSERT_EQ(posted.size(), 4);
    EXPECT_EQ(posted.at(0).value(QStringLiteral("filePath")).toString(), a);
    EXPECT_TRUE(posted.at(0).value(QStringLiteral("isFavour")).toBool());
    EXPECT_EQ(posted.at(1).value(QStringLiteral("favourType")).toString(), QStringLiteral("diamond"));
    EXPECT_EQ(posted.at(2).value(QStringLiteral("favourType")).toString(), QString());
    EXPECT_TRUE(posted.at(2).value(QStringLiteral("isFavour")).toBool());
    EXPECT_FALSE(posted.at(3).value(QStringLiteral("isFavour")).toBool());
    EXPECT_TRUE(rows().isEmpty());
}

TEST_F(FavourManagerTest, ClearingATypeThatCannotBeSavedSaysSo)
{
    const QString a = picture(QStringLiteral("a.jpg"));
    ASSERT_TRUE(manager.setType(a, FavourType::grass));
    addTrigger(QStringLiteral("UPDATE"));
    LogCapture log;
    EXPECT_FALSE(manager.setType(a, std::nullopt));
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("❌ 清除收藏类型失败")));
    EXPECT_EQ(manager.records().constFirst().favourType, FavourType::grass);
}

TEST(FavourManagerFile, ADatabaseFileThatIsNotADatabaseIsNeverOverwritten)
{
    TempFolder folder;
    const QByteArray original = QByteArray("not sqlite at all, but someone's notes\n").repeated(300);
    const QString path = folder.write(QStringLiteral("fav.db"), original);
    MemorySettingsStore settings;
    FavourManager manager(settings);
    EXPECT_FALSE(manager.open(path));
    EXPECT_FALSE(manager.setFavour(folder.filePath(QStringLiteral("a.jpg")), true));
    EXPECT_FALSE(manager.favourites());
    EXPECT_TRUE(manager.records().isEmpty());
    EXPECT_EQ(folder.read(QStringLiteral("fav.db")), original);
    EXPECT_EQ(folder.entries(), QStringList{QStringLiteral("fav.db")});
}

// The same-name check runs after every heart click: reading the whole table for it made a click at 50,000
// records take 4 ms. It reads an index, in a new store and in one made before the index existed.
TEST_F(FavourManagerTest, TheSameNameCheckReadsAnIndexNotTheWholeTable)
{
    const QString older = folder.filePath(QStringLiteral("older.db"));
    {
        LocalDatabaseManager db;
        ASSERT_TRUE(db.open(older));
        ASSERT_TRUE(db.execute(
            QStringLiteral("CREATE TABLE favourites (id INTEGER PRIMARY KEY AUTOINCREMENT, file_path "
                           "TEXT NOT NULL UNIQUE, file_name TEXT NOT NULL, is_favour INTEGER NOT NULL "
                           "DEFAULT 0, favour_type TEXT, created_at REAL NOT NULL, updated_at REAL "
                           "NOT NULL);")));
    }
    for (const QString& path : {dbPath, older}) {
        FavourManager store(settings);
        ASSERT_TRUE(store.open(path));
        const auto plan = store.dbManager().query(
            QStringLiteral("EXPLAIN QUERY PLAN SELECT id, file_path, is_favour, favour_type FROM favourites "
                           "WHERE file_name = ?;"),
            {QStringLiteral("IMG_0001.JPG")});
        ASSERT_TRUE(plan && !plan->isEmpty());
        const QString detail = plan->constLast().value(QStringLiteral("detail")).toString();
        EXPECT_TRUE(detail.contains(QLatin1String("INDEX idx_file_name"))) << detail.toStdString();
    }
}
