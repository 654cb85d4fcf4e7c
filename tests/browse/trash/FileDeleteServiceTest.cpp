// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/trash/FileDeleteService.h"

#include "platform/FreedesktopTrash.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace lumaro::browse;
using namespace lumaro::platform;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

FileDeleteService::Options withoutGio()
{
    FileDeleteService::Options options;
    options.useGio = false; // the desktop's own restore is tried last; these cases are about ours
    return options;
}

DeletedFileInfo recordOf(const QString& folder, const QString& name, const TrashOutcome& outcome)
{
    DeletedFileInfo info;
    info.fileName = name;
    info.folderPath = folder;
    info.trashFileURL = outcome.trashFilePath;
    return info;
}

} // namespace

TEST(FileDeleteService, MovesToTheTrashWithItsTimingLines)
{
    TempFolder folder;
    folder.write(QStringLiteral("a.jpg"));
    FileDeleteService service(withoutGio());
    LogCapture log;
    const TrashOutcome outcome = service.moveToTrash(QStringLiteral("a.jpg"), folder.path(), std::nullopt);
    ASSERT_TRUE(outcome.ok()) << qPrintable(outcome.error);
    EXPECT_TRUE(QFileInfo::exists(*outcome.trashFilePath));
    EXPECT_FALSE(folder.exists(QStringLiteral("a.jpg")));
    EXPECT_TRUE(log.contains(QStringLiteral("FileDeleteService - 成功将文件移动到废纸篓: a.jpg")));
    for (const char* step : {"resolveBookmark", "startScope", "trashOp", "total"})
        EXPECT_EQ(log.countStartingWith(QStringLiteral("PERF-DEL: %1=").arg(QLatin1String(step))), 1) << step;
}

TEST(FileDeleteService, ANameThatIsAPathIsRefused)
{
    TempFolder folder;
    folder.write(QStringLiteral("keep.jpg"));
    FileDeleteService service(withoutGio());
    EXPECT_FALSE(service.moveToTrash(QStringLiteral("../keep.jpg"), folder.filePath(QStringLiteral("sub")), {}).ok());
    EXPECT_FALSE(service.moveToTrash(QStringLiteral(".."), folder.path(), {}).ok());
    EXPECT_TRUE(folder.exists(QStringLiteral("keep.jpg")));
}

TEST(FileDeleteService, RestoresFromTheSavedTrashPath)
{
    TempFolder folder;
    folder.write(QStringLiteral("a b.jpg"), QByteArrayLiteral("pixels"));
    FileDeleteService service(withoutGio());
    const TrashOutcome outcome = service.moveToTrash(QStringLiteral("a b.jpg"), folder.path(), {});
    ASSERT_TRUE(outcome.ok());
    LogCapture log;
    ASSERT_TRUE(service.restoreFile(recordOf(folder.path(), QStringLiteral("a b.jpg"), outcome)));
    EXPECT_EQ(folder.read(QStringLiteral("a b.jpg")), QByteArrayLiteral("pixels"));
    EXPECT_FALSE(QFileInfo::exists(TrashRestorer::entryFor(*outcome.trashFilePath).infoPath));
    EXPECT_TRUE(log.contains(QStringLiteral("FileDeleteService - 成功恢复文件: ") + folder.filePath("a b.jpg")));
    EXPECT_TRUE(log.contains(QStringLiteral("FileDeleteService - 文件恢复完成，准备恢复系统标签 (若有)")));
}

TEST(FileDeleteService, WithoutASavedPathTheTrashRecordFindsTheNewestItem)
{
    TempFolder folder;
    FileDeleteService service(withoutGio());
    folder.write(QStringLiteral("IMG_1.jpg"), QByteArrayLiteral("older"));
    ASSERT_TRUE(service.moveToTrash(QStringLiteral("IMG_1.jpg"), folder.path(), {}).ok());
    folder.write(QStringLiteral("IMG_1.jpg"), QByteArrayLiteral("newer"));
    const TrashOutcome newer = service.moveToTrash(QStringLiteral("IMG_1.jpg"), folder.path(), {});
    ASSERT_TRUE(newer.ok());
    // Same second: make the newer one's record clearly newer.
    QFile info(TrashRestorer::entryFor(*newer.trashFilePath).infoPath);
    ASSERT_TRUE(info.open(QIODevice::ReadOnly));
    QByteArray text = info.readAll();
    info.close();
    text.replace(QByteArrayLiteral("DeletionDate="), QByteArrayLiteral("DeletionDate=2999"));
    text.remove(text.indexOf("2999") + 4, 4);
    ASSERT_TRUE(info.open(QIODevice::WriteOnly | QIODevice::Truncate));
    info.write(text);
    info.close();

    DeletedFileInfo record = recordOf(folder.path(), QStringLiteral("IMG_1.jpg"), {});
    LogCapture log;
    ASSERT_TRUE(service.restoreFile(record));
    EXPECT_EQ(folder.read(QStringLiteral("IMG_1.jpg")), QByteArrayLiteral("newer"));
    EXPECT_TRUE(log.contains(QStringLiteral("FileDeleteService - 没有保存的废纸篓文件路径，将尝试查找")));
}

TEST(FileDeleteService, ACrossDeviceItemIsCopiedBackAndThenRemovedFromTheTrash)
{
    TempFolder folder;
    folder.write(QStringLiteral("far.jpg"), QByteArray(256 * 1024, 'p'));
    FileDeleteService::Options options = withoutGio();
    options.rename = [](const QString&, const QString&) {
        RenameResult result;
        result.crossDevice = true;
        result.error = QStringLiteral("Invalid cross-device link");
        return result;
    };
    FileDeleteService service(options);
    const TrashOutcome outcome = service.moveToTrash(QStringLiteral("far.jpg"), folder.path(), {});
    ASSERT_TRUE(outcome.ok());
    const QString infoPath = TrashRestorer::entryFor(*outcome.trashFilePath).infoPath;
    LogCapture log;
    ASSERT_TRUE(service.restoreFile(recordOf(folder.path(), QStringLiteral("far.jpg"), outcome)));
    EXPECT_EQ(folder.read(QStringLiteral("far.jpg")), QByteArray(256 * 1024, 'p'));
    EXPECT_FALSE(QFileInfo::exists(*outcome.trashFilePath));
    EXPECT_FALSE(QFileInfo::exists(infoPath));
    EXPECT_TRUE(log.contains(QStringLiteral("FileDeleteService - 现代API恢复成功: far.jpg")));
    EXPECT_EQ(folder.entries(), QStringList({"far.jpg"}));
}

TEST(FileDeleteService, AfterTheTrashWasEmptiedEveryWayFails)
{
    TempFolder folder;
    folder.write(QStringLiteral("a.jpg"));
    FileDeleteService service(withoutGio());
    const TrashOutcome outcome = service.moveToTrash(QStringLiteral("a.jpg"), folder.path(), {});
    ASSERT_TRUE(outcome.ok());
    ASSERT_TRUE(QDir(TrashDirectories::homeTrash()).removeRecursively());
    LogCapture log;
    EXPECT_FALSE(service.restoreFile(recordOf(folder.path(), QStringLiteral("a.jpg"), outcome)));
    EXPECT_TRUE(log.contains(QStringLiteral("FileDeleteService - 废纸篓文件不存在: ") + *outcome.trashFilePath));
    EXPECT_TRUE(log.contains(QStringLiteral("FileDeleteService - 所有恢复方法都失败了")));
    EXPECT_FALSE(folder.exists(QStringLiteral("a.jpg")));
}

TEST(FileDeleteService, ANameTakenMeanwhileIsNeverOverwritten)
{
    TempFolder folder;
    folder.write(QStringLiteral("a.jpg"), QByteArrayLiteral("deleted"));
    FileDeleteService service(withoutGio());
    const TrashOutcome outcome = service.moveToTrash(QStringLiteral("a.jpg"), folder.path(), {});
    ASSERT_TRUE(outcome.ok());
    folder.write(QStringLiteral("a.jpg"), QByteArrayLiteral("newcomer"));
    EXPECT_FALSE(service.restoreFile(recordOf(folder.path(), QStringLiteral("a.jpg"), outcome)));
    EXPECT_EQ(folder.read(QStringLiteral("a.jpg")), QByteArrayLiteral("newcomer"));
    EXPECT_TRUE(QFileInfo::exists(*outcome.trashFilePath)); // still safe in the Trash
}
