// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/LocalDatabaseManager.h"

#include "platform/AppPaths.h"
#include "platform/Log.h"
#include "tests/library/DamagedDatabase.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

using namespace lumaro::library;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

const QString kTag = QStringLiteral("LocalDatabaseManager - ");

QByteArray notADatabase()
{
    QByteArray bytes(8192, '\0');
    QRandomGenerator generator(7);
    for (char& byte : bytes)
        byte = char(generator.bounded(256));
    bytes.replace(0, 16, "holiday pictures");
    return bytes;
}

} // namespace

TEST(LocalDatabaseManager, OpensInTheDataFolderCreatingItWithForeignKeysAndWal)
{
    QDir(lumaro::platform::AppPaths::dataDir()).removeRecursively();
    LogCapture log;
    LocalDatabaseManager db;
    ASSERT_TRUE(db.open());
    const QString expected = QDir(lumaro::platform::AppPaths::dataDir()).filePath(QStringLiteral("fav.db"));
    EXPECT_EQ(db.path(), expected);
    EXPECT_TRUE(QFile::exists(expected));
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("✅ 数据库已打开: ") + expected));
    EXPECT_EQ(db.query(QStringLiteral("PRAGMA foreign_keys;"))->constFirst().first().toInt(), 1);
    EXPECT_EQ(db.query(QStringLiteral("PRAGMA journal_mode;"))->constFirst().first().toString(), QStringLiteral("wal"));
    EXPECT_EQ(db.query(QStringLiteral("PRAGMA synchronous;"))->constFirst().first().toInt(), 1) << "NORMAL";
    db.close();
    EXPECT_FALSE(db.isOpen());
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("✅ 数据库已关闭")));
}

struct BindCase
{
    const char* name;
    QVariant value;
    const char* sqlType;
    QVariant readBack;
};

class LocalDatabaseManagerBind : public ::testing::TestWithParam<BindCase>
{
};

TEST_P(LocalDatabaseManagerBind, StoresEachKindAsItsSqliteType)
{
    TempFolder folder;
    LocalDatabaseManager db;
    ASSERT_TRUE(db.open(folder.filePath(QStringLiteral("t.db"))));
    ASSERT_TRUE(db.execute(QStringLiteral("CREATE TABLE t (v);")));
    ASSERT_TRUE(db.execute(QStringLiteral("INSERT INTO t (v) VALUES (?);"), {GetParam().value}));
    const auto rows = db.query(QStringLiteral("SELECT typeof(v) AS kind, v FROM t;"));
    ASSERT_TRUE(rows && rows->size() == 1);
    EXPECT_EQ(rows->constFirst().value(QStringLiteral("kind")).toString(), QString::fromUtf8(GetParam().sqlType));
    EXPECT_EQ(rows->constFirst().value(QStringLiteral("v")), GetParam().readBack);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, LocalDatabaseManagerBind,
    ::testing::Values(
        BindCase{"text", QStringLiteral("收藏 with space\nand newline"), "text", QStringLiteral("收藏 with space\nand newline")},
        BindCase{"integer", 42, "integer", qint64(42)},
        BindCase{"int64", qint64(1) << 40, "integer", qint64(1) << 40},
        BindCase{"boolean", true, "integer", qint64(1)},
        BindCase{"real", 1700000000.25, "real", 1700000000.25},
        BindCase{"null", QVariant(), "null", QVariant()}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(LocalDatabaseManager, RefusesAParameterItCannotBindAndRunsNothing)
{
    TempFolder folder;
    LocalDatabaseManager db;
    ASSERT_TRUE(db.open(folder.filePath(QStringLiteral("t.db"))));
    ASSERT_TRUE(db.execute(QStringLiteral("CREATE TABLE t (v);")));
    LogCapture log;
    EXPECT_FALSE(db.execute(QStringLiteral("INSERT INTO t (v) VALUES (?);"), {QVariant(QVariantMap{{"a", 1}})}));
    EXPECT_EQ(log.countStartingWith(kTag + QStringLiteral("⚠️ 未支持的参数类型: ")), 1);
    EXPECT_EQ(db.query(QStringLiteral("SELECT v FROM t;"))->size(), 0);
}

TEST(LocalDatabaseManager, ReportsChangedRowsAndWarnsWhenNoneChanged)
{
    TempFolder folder;
    LocalDatabaseManager db;
    ASSERT_TRUE(db.open(folder.filePath(QStringLiteral("t.db"))));
    ASSERT_TRUE(db.execute(QStringLiteral("CREATE TABLE t (v);")));
    ASSERT_TRUE(db.execute(QStringLiteral("INSERT INTO t (v) VALUES (1), (2);")));
    LogCapture log;
    EXPECT_TRUE(db.execute(QStringLiteral("UPDATE t SET v = v + 1;")));
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("✅ SQL 执行成功，影响了 2 行")));
    const QString none = QStringLiteral("DELETE FROM t WHERE v = ?;");
    EXPECT_TRUE(db.execute(none, {99}));
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("⚠️ SQL 执行成功但没有行被影响: ") + none));
}

TEST(LocalDatabaseManager, PrepareAndStepFailuresCarrySqliteMessageAndCodes)
{
    TempFolder folder;
    LocalDatabaseManager db;
    ASSERT_TRUE(db.open(folder.filePath(QStringLiteral("t.db"))));
    ASSERT_TRUE(db.execute(QStringLiteral("CREATE TABLE t (v TEXT UNIQUE);")));
    ASSERT_TRUE(db.execute(QStringLiteral("INSERT INTO t (v) VALUES (?);"), {QStringLiteral("a")}));
    LogCapture log;
    EXPECT_FALSE(db.execute(QStringLiteral("SELEC v FROM t;")));
    EXPECT_EQ(log.countStartingWith(kTag + QStringLiteral("❌ SQL 准备失败: ")), 1);
    EXPECT_FALSE(db.query(QStringLiteral("SELECT nothing FROM t;")));
    EXPECT_FALSE(db.execute(QStringLiteral("INSERT INTO t (v) VALUES (?);"), {QStringLiteral("a")}));
    EXPECT_TRUE(log.contains(kTag
                             + QStringLiteral("❌ SQL 执行失败: UNIQUE constraint failed: t.v (错误代码: 19, 扩展错误代码: 2067)")));
    EXPECT_EQ(db.lastError().code, 19);
    EXPECT_EQ(db.lastError().extendedCode, 2067);
}

TEST(LocalDatabaseManager, AFileThatIsNotADatabaseIsRefusedAndLeftUntouched)
{
    TempFolder folder;
    const QByteArray original = notADatabase();
    const QString path = folder.write(QStringLiteral("fav.db"), original);
    LogCapture log;
    LocalDatabaseManager db;
    EXPECT_FALSE(db.open(path));
    EXPECT_FALSE(db.isOpen());
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("❌ 无法打开数据库: file is not a database")));
    EXPECT_TRUE(log.contains(kTag + QStringLiteral("   数据库路径: ") + path));
    EXPECT_EQ(db.lastError().code, 26); // SQLITE_NOTADB
    EXPECT_FALSE(db.execute(QStringLiteral("CREATE TABLE t (v);")));
    EXPECT_EQ(folder.read(QStringLiteral("fav.db")), original);
    EXPECT_EQ(folder.entries(), QStringList{QStringLiteral("fav.db")});
}

TEST(LocalDatabaseManager, ATransactionWhoseBodyFailsLeavesNoTrace)
{
    TempFolder folder;
    LocalDatabaseManager db;
    ASSERT_TRUE(db.open(folder.filePath(QStringLiteral("t.db"))));
    ASSERT_TRUE(db.execute(QStringLiteral("CREATE TABLE t (v);")));
    EXPECT_FALSE(db.inTransaction([&] {
        db.execute(QStringLiteral("INSERT INTO t (v) VALUES (1);"));
        return false;
    }));
    EXPECT_TRUE(db.inTransaction([&] { return db.execute(QStringLiteral("INSERT INTO t (v) VALUES (2);")); }));
    const auto rows = db.query(QStringLiteral("SELECT v FROM t;"));
    ASSERT_EQ(rows->size(), 1);
    EXPECT_EQ(rows->constFirst().value(QStringLiteral("v")).toInt(), 2);
}

TEST(LocalDatabaseManager, AWriterThatCannotGetTheLockInTimeFailsWithBusy)
{
    TempFolder folder;
    const QString path = folder.filePath(QStringLiteral("t.db"));
    LocalDatabaseManager holder;
    LocalDatabaseManager other;
    ASSERT_TRUE(holder.open(path));
    ASSERT_TRUE(holder.execute(QStringLiteral("CREATE TABLE t (v);")));
    ASSERT_TRUE(other.open(path));
    other.setBusyTimeout(0);
    holder.inTransaction([&] {
        EXPECT_FALSE(other.execute(QStringLiteral("INSERT INTO t (v) VALUES (1);")));
        EXPECT_EQ(other.lastError().code, 5); // SQLITE_BUSY
        return true;
    });
    EXPECT_TRUE(other.execute(QStringLiteral("INSERT INTO t (v) VALUES (1);")));
}

TEST(LocalDatabaseManager, ADamagedDatabaseIsNeverWrittenTo)
{
    TempFolder folder;
    const QString path = folder.filePath(QStringLiteral("fav.db"));
    {
        LocalDatabaseManager db;
        ASSERT_TRUE(db.open(path));
        ASSERT_TRUE(db.execute(QStringLiteral("CREATE TABLE t (v TEXT);")));
        ASSERT_TRUE(db.inTransaction([&] {
            for (int i = 0; i < 300; ++i)
                db.execute(
                    QStringLiteral("INSERT INTO t (v) VALUES (?);"),
                    {QStringLiteral("old-%1-").arg(i, 4, 10, QLatin1Char('0')).leftJustified(100, 'x')});
            return true;
        }));
    }
    ASSERT_TRUE(lumaro::testing::damageTablePageHolding(path, "old-0001-"));
    const QByteArray damaged = folder.read(QStringLiteral("fav.db"));

    LogCapture log;
    LocalDatabaseManager db;
    ASSERT_TRUE(db.open(path)); // opening reads only the schema, which is whole
    EXPECT_FALSE(db.execute(QStringLiteral("INSERT INTO t (v) VALUES ('new');")));
    EXPECT_EQ(db.lastError().code, 11); // SQLITE_CORRUPT
    EXPECT_FALSE(db.inTransaction([&] { return db.execute(QStringLiteral("DELETE FROM t;")); }));
    EXPECT_FALSE(db.checkIntegrity());
    EXPECT_EQ(log.countStartingWith(kTag + QStringLiteral("❌ 数据库已损坏: ")),
              1); // checked once, remembered
    db.close();
    EXPECT_EQ(folder.read(QStringLiteral("fav.db")), damaged);
}

// SQLite's busy wait is not fair: other writers can keep taking the lock until the busy timeout has passed. The
// transaction then starts over after a pause instead of failing.
TEST(LocalDatabaseManager, ATransactionOutwaitedByAnotherWriterStartsOverAndCommits)
{
    TempFolder folder;
    const QString path = folder.filePath(QStringLiteral("fav.db"));
    LocalDatabaseManager db;
    ASSERT_TRUE(db.open(path));
    ASSERT_TRUE(db.execute(QStringLiteral("CREATE TABLE t (v);")));
    db.setBusyTimeout(50);

    std::promise<void> retrying;
    std::atomic<bool> released{false};
    const auto release = [&] {
        if (!released.exchange(true))
            retrying.set_value();
    };
    lumaro::platform::Log::setSink([&](const QString& line) {
        if (line.startsWith(kTag + QStringLiteral("⚠️ 数据库被占用")))
            release();
    });
    std::promise<void> holding;
    std::thread other([&] {
        LocalDatabaseManager writer;
        writer.open(path);
        writer.inTransaction([&] {
            writer.execute(QStringLiteral("INSERT INTO t (v) VALUES ('theirs');"));
            holding.set_value();
            retrying.get_future().wait(); // the lock is kept until the first attempt has given up
            return true;
        });
    });
    holding.get_future().wait();
    const bool committed = db.inTransaction([&] { return db.execute(QStringLiteral("INSERT INTO t (v) VALUES ('mine');")); });
    release();
    other.join();
    lumaro::platform::Log::setSink(nullptr);
    EXPECT_TRUE(committed);
    EXPECT_EQ(db.query(QStringLiteral("SELECT v FROM t;"))->size(), 2);
}
