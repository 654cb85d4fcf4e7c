// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/trash/FileDeleteService.h"

#include "platform/FolderAccessToken.h"
#include "platform/FreedesktopTrash.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TmpfsMount.h"

#include <QDir>
#include <QFileInfo>
#include <QThreadPool>

#include <future>

#include <gtest/gtest.h>

using namespace lumaro::browse;
using namespace lumaro::platform;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;
using lumaro::testing::TmpfsMount;

namespace {

FileDeleteService::Options withoutGio()
{
    FileDeleteService::Options options;
    options.useGio = false; // the desktop's own restore is tried last; these cases are about ours
    return options;
}

// Renames that always cross a device, as onto a card or another disk.
FileDeleteService::Options crossingDevices()
{
    FileDeleteService::Options options = withoutGio();
    options.rename = [](const QString&, const QString&) {
        RenameResult result;
        result.crossDevice = true;
        result.error = QStringLiteral("Invalid cross-device link");
        return result;
    };
    return options;
}

// `bytes` put into the home Trash as another trasher would: files/`item` and its record naming `original`.
QString putInHomeTrash(const QString& item, const QString& original, const QByteArray& bytes)
{
    QString error;
    EXPECT_TRUE(TrashDirectories::ensure(TrashDirectories::homeTrash(), &error)) << qPrintable(error);
    QFile file(TrashDirectories::homeTrash() + QStringLiteral("/files/") + item);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    QFile info(TrashDirectories::homeTrash() + QStringLiteral("/info/") + item +
               QStringLiteral(".trashinfo"));
    EXPECT_TRUE(info.open(QIODevice::WriteOnly));
    info.write("[Trash Info]\nPath=" + FreedesktopTrash::encodedPath(original) +
               "\nDeletionDate=2024-05-01T10:00:00\n");
    return file.fileName();
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
    EXPECT_FALSE(
        service.moveToTrash(QStringLiteral("../keep.jpg"), folder.filePath(QStringLiteral("sub")), {}).ok());
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
    EXPECT_TRUE(
        log.contains(QStringLiteral("FileDeleteService - 成功恢复文件: ") + folder.filePath("a b.jpg")));
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
    FileDeleteService service(crossingDevices());
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
    EXPECT_TRUE(
        log.contains(QStringLiteral("FileDeleteService - 废纸篓文件不存在: ") + *outcome.trashFilePath));
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

TEST(FileDeleteService, AFileListedBelowTheGrantedFolderIsTheOneThatGoes)
{
    // Deep mode: the granted folder's token travels with a picture listed from a folder below it.
    TempFolder base;
    base.write(QStringLiteral("IMG_1.jpg"), QByteArrayLiteral("base"));
    base.write(QStringLiteral("sub/IMG_1.jpg"), QByteArrayLiteral("sub"));
    base.write(QStringLiteral("sub/only here.jpg"), QByteArrayLiteral("only"));
    const auto token = FolderAccessToken::create(base.path());
    ASSERT_TRUE(token);
    FileDeleteService service(withoutGio());
    const QString sub = base.filePath(QStringLiteral("sub"));
    for (const QString& name : {QStringLiteral("IMG_1.jpg"), QStringLiteral("only here.jpg")}) {
        const TrashOutcome outcome = service.moveToTrash(name, sub, token);
        ASSERT_TRUE(outcome.ok()) << qPrintable(name + ": " + outcome.error);
        EXPECT_FALSE(base.exists(QStringLiteral("sub/") + name));
        DeletedFileInfo record = recordOf(sub, name, outcome);
        record.folderBookmarkData = token;
        ASSERT_TRUE(service.restoreFile(record)) << qPrintable(name);
        EXPECT_TRUE(base.exists(QStringLiteral("sub/") + name));
    }
    EXPECT_EQ(base.read(QStringLiteral("IMG_1.jpg")), QByteArrayLiteral("base"));
    EXPECT_EQ(base.read(QStringLiteral("sub/IMG_1.jpg")), QByteArrayLiteral("sub"));
}

TEST(FileDeleteService, AnotherFoldersItemOfTheSameNameIsNeverTaken)
{
    // Card A's IMG_3.jpg was trashed and the Trash emptied; card B's IMG_3.jpg then got the free name.
    // Neither the path saved with A's record nor a lookup by name may bring B's picture into A's folder.
    for (const bool withSavedPath : {true, false}) {
        TempFolder cards;
        const QString cardA = cards.makeFolder(QStringLiteral("A"));
        const QString cardB = cards.makeFolder(QStringLiteral("B"));
        cards.write(QStringLiteral("A/IMG_3.jpg"), QByteArrayLiteral("from A"));
        cards.write(QStringLiteral("B/IMG_3.jpg"), QByteArrayLiteral("from B"));
        FileDeleteService service(withoutGio());
        const TrashOutcome fromA = service.moveToTrash(QStringLiteral("IMG_3.jpg"), cardA, {});
        ASSERT_TRUE(fromA.ok());
        ASSERT_TRUE(QDir(TrashDirectories::homeTrash()).removeRecursively());
        const TrashOutcome fromB = service.moveToTrash(QStringLiteral("IMG_3.jpg"), cardB, {});
        ASSERT_TRUE(fromB.ok());
        ASSERT_EQ(*fromB.trashFilePath, *fromA.trashFilePath); // the same name in the Trash

        DeletedFileInfo record =
            recordOf(cardA, QStringLiteral("IMG_3.jpg"), withSavedPath ? fromA : TrashOutcome{});
        EXPECT_FALSE(service.restoreFile(record)) << "saved path: " << withSavedPath;
        EXPECT_FALSE(cards.exists(QStringLiteral("A/IMG_3.jpg")));
        EXPECT_TRUE(QFileInfo::exists(*fromB.trashFilePath));
        EXPECT_EQ(TrashRestorer::entryFor(*fromB.trashFilePath).originalPath,
                  QDir(cardB).filePath("IMG_3.jpg"));
        EXPECT_FALSE(service.canStillRestore(record));

        ASSERT_TRUE(service.restoreFile(recordOf(cardB, QStringLiteral("IMG_3.jpg"), fromB)));
        EXPECT_EQ(cards.read(QStringLiteral("B/IMG_3.jpg")), QByteArrayLiteral("from B"));
    }
}

TEST(FileDeleteService, ACrossDeviceCopyIsWaitedForEvenWhenThePoolIsBusy)
{
    // The restore runs on the pool (the dispatcher puts it there); with every other pool thread busy a copy
    // handed to the pool would not even start, and a restore that gave up on it would report a failure while
    // the copy later took the item out of the Trash.
    TempFolder folder;
    folder.write(QStringLiteral("far.jpg"), QByteArrayLiteral("pixels"));
    FileDeleteService service(crossingDevices());
    const TrashOutcome outcome = service.moveToTrash(QStringLiteral("far.jpg"), folder.path(), {});
    ASSERT_TRUE(outcome.ok());
    QThreadPool* pool = QThreadPool::globalInstance();
    const int threads = pool->maxThreadCount();
    pool->setMaxThreadCount(1);
    std::promise<bool> restored;
    pool->start([&] {
        restored.set_value(service.restoreFile(recordOf(folder.path(), QStringLiteral("far.jpg"), outcome)));
    });
    const bool ok = restored.get_future().get();
    pool->setMaxThreadCount(threads);
    EXPECT_TRUE(ok);
    EXPECT_EQ(folder.read(QStringLiteral("far.jpg")), QByteArrayLiteral("pixels"));
    EXPECT_FALSE(QFileInfo::exists(*outcome.trashFilePath));
}

TEST(FileDeleteService, AnItemInTheHomeTrashComesBackToAnotherVolume)
{
    TmpfsMount volume;
    if (!volume.isMounted())
        GTEST_SKIP() << qPrintable(volume.whyNot());
    const QString folder = QDir(volume.path()).filePath(QStringLiteral("card"));
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString original = QDir(folder).filePath(QStringLiteral("IMG_9.jpg"));
    // A trasher that could not use the card's own trash copied the file into the home trash.
    const QByteArray pixels(3 * 1024 * 1024, 'c');
    const QString item = putInHomeTrash(QStringLiteral("IMG_9.jpg"), original, pixels);
    const QString info = TrashDirectories::homeTrash() + QStringLiteral("/info/IMG_9.jpg.trashinfo");

    FileDeleteService service(withoutGio());
    LogCapture log;
    ASSERT_TRUE(service.restoreFile(recordOf(folder, QStringLiteral("IMG_9.jpg"), TrashOutcome{item})));
    QFile back(original);
    ASSERT_TRUE(back.open(QIODevice::ReadOnly));
    EXPECT_EQ(back.readAll(), pixels);
    EXPECT_FALSE(QFileInfo::exists(item));
    EXPECT_FALSE(QFileInfo::exists(info));
    EXPECT_TRUE(log.contains(QStringLiteral("FileDeleteService - 现代API恢复成功: IMG_9.jpg")));
}

TEST(FileDeleteService, ABatchFindsItemsNamedOtherwiseAndReportsEachFile)
{
    TempFolder folder;
    folder.write(QStringLiteral("IMG 8.jpg"), QByteArrayLiteral("eight"));
    FileDeleteService service(withoutGio());
    ASSERT_TRUE(service.moveToTrash(QStringLiteral("IMG 8.jpg"), folder.path(), {}).ok());
    // Another trasher's naming: "IMG 7 (2).jpg".
    putInHomeTrash(QStringLiteral("IMG 7 (2).jpg"), folder.filePath(QStringLiteral("IMG 7.jpg")), "seven");

    QList<DeletedFileInfo> records;
    for (const QString& name :
         {QStringLiteral("IMG 7.jpg"), QStringLiteral("never.jpg"), QStringLiteral("IMG 8.jpg")})
        records << recordOf(folder.path(), name, {});
    EXPECT_EQ(service.restoreFiles(records), QList<bool>({true, false, true}));
    EXPECT_EQ(folder.read(QStringLiteral("IMG 7.jpg")), QByteArrayLiteral("seven"));
    EXPECT_EQ(folder.read(QStringLiteral("IMG 8.jpg")), QByteArrayLiteral("eight"));
}

TEST(FileDeleteService, SidecarsGoToTheTrashWithTheirPictureAndComeBackWithIt)
{
    TempFolder folder;
    folder.write(QStringLiteral("IMG_1.CR2"), QByteArrayLiteral("raw"));
    folder.write(QStringLiteral("IMG_1.CR2.xmp"), QByteArrayLiteral("darktable's"));
    folder.write(QStringLiteral("IMG_2.CR2"), QByteArrayLiteral("raw"));
    folder.write(QStringLiteral("IMG_2.JPG"), QByteArrayLiteral("jpeg"));
    folder.write(QStringLiteral("IMG_2.xmp"), QByteArrayLiteral("shared by the pair"));
    FileDeleteService service(withoutGio());
    const TrashOutcome first = service.moveToTrash(QStringLiteral("IMG_1.CR2"), folder.path(), {});
    const TrashOutcome second = service.moveToTrash(QStringLiteral("IMG_2.CR2"), folder.path(), {});
    ASSERT_TRUE(first.ok() && second.ok());
    EXPECT_EQ(folder.entries(), (QStringList{QStringLiteral("IMG_2.JPG"), QStringLiteral("IMG_2.xmp")}))
        << "a sidecar the JPEG still shares stays with it";

    folder.write(QStringLiteral("IMG_1.CR2.xmp"), QByteArrayLiteral("written since"));
    ASSERT_TRUE(service.restoreFile(recordOf(folder.path(), QStringLiteral("IMG_1.CR2"), first)));
    EXPECT_EQ(folder.read(QStringLiteral("IMG_1.CR2.xmp")), QByteArrayLiteral("written since"));
    ASSERT_TRUE(QFile::remove(folder.filePath(QStringLiteral("IMG_1.CR2.xmp"))));
    ASSERT_TRUE(service.moveToTrash(QStringLiteral("IMG_1.CR2"), folder.path(), {}).ok());
    ASSERT_TRUE(service.restoreFile(recordOf(folder.path(), QStringLiteral("IMG_1.CR2"), {})));
    EXPECT_EQ(folder.read(QStringLiteral("IMG_1.CR2.xmp")), QByteArrayLiteral("darktable's"));
}
