// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/HotkeyDispatcher.h"

#include "browse/marks/RatingChange.h"
#include "platform/ExifOrientation.h"
#include "platform/Trash.h"
#include "platform/TrashDirectories.h"
#include "tests/browse/hotkeys/DispatcherRig.h"

#include "tests/support/LogCapture.h"

#include <QDir>
#include <QImageReader>

#include <sys/xattr.h>

using namespace lumaro::browse;
using namespace lumaro::platform;
using lumaro::testing::LogCapture;
using lumaro::testing::waitUntil;

namespace {

class FailingTrash : public Trash
{
public:
    std::optional<TrashedItem> moveToTrash(const QString&, QString* error) override
    {
        *error = QStringLiteral("Permission denied");
        return std::nullopt;
    }
};

class Dispatcher : public DispatcherRig
{
protected:
    QStringList tagsOnDisk(const QString& name)
    {
        return tags.tags(folder.filePath(name)).value_or(QStringList{"?"});
    }
};

} // namespace

TEST_F(Dispatcher, SevenDeletesThenSevenRestoresBringBackSix)
{
    open(10);
    for (int i = 0; i < 7; ++i)
        press(HotkeyAction::deleteFile);
    EXPECT_EQ(state.imageFiles(), original.mid(7));
    EXPECT_EQ(state.deletedFilesHistory().size(), 6);
    LogCapture log;
    for (int i = 0; i < 7; ++i)
        press(HotkeyAction::restoreFile);
    EXPECT_EQ(state.imageFiles(), original.mid(1));
    EXPECT_EQ(state.selectedImageIndex(), 0);
    EXPECT_TRUE(state.deletedFilesHistory().isEmpty());
    EXPECT_TRUE(log.contains(QStringLiteral("HotkeyDispatcher - 没有可恢复的删除文件")));
    EXPECT_EQ(folder.entries(), original.mid(1)); // the oldest stays in the Trash, nothing else is lost
}

TEST_F(Dispatcher, AFileFromTheMiddleComesBackAtItsIndexAndIsSelected)
{
    open(10);
    state.select(4);
    press(HotkeyAction::deleteFile);
    EXPECT_FALSE(folder.exists(original.at(4)));
    EXPECT_EQ(state.selectedImageIndex(), 4);
    EXPECT_TRUE(state.isDeleteIndicatorVisible);
    state.select(7);
    press(HotkeyAction::restoreFile);
    EXPECT_EQ(state.imageFiles(), original);
    EXPECT_EQ(state.selectedImageIndex(), 4);
    EXPECT_TRUE(state.isRestoreIndicatorVisible);
}

TEST_F(Dispatcher, ARestoreIntoAShorterListAppendsTheFile)
{
    open(10);
    state.select(8);
    press(HotkeyAction::deleteFile);
    state.setImageFiles(original.mid(0, 3));
    press(HotkeyAction::restoreFile);
    EXPECT_EQ(state.imageFiles(), original.mid(0, 3) << original.at(8));
    EXPECT_EQ(state.selectedImageIndex(), 3);
}

TEST_F(Dispatcher, ASecondDeleteWhileOneIsUnderWayIsRefused)
{
    open(5);
    LogCapture log;
    dispatcher.perform(HotkeyAction::deleteFile);
    dispatcher.perform(HotkeyAction::deleteFile);
    ASSERT_TRUE(waitUntil([this] { return !dispatcher.isBusy(); }));
    EXPECT_EQ(state.imageFiles(), original.mid(1));
    EXPECT_EQ(state.deletedFilesHistory().size(), 1);
    EXPECT_EQ(folder.entries().size(), 4);
    EXPECT_FALSE(state.isDeleting);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("HotkeyDispatcher - 准备删除文件: ")), 1);
}

TEST_F(Dispatcher, AFailedDeleteTellsTheUserAndChangesNothing)
{
    FailingTrash failing;
    FileDeleteService refusing(withoutGio(&failing));
    DispatcherServices withRefusingTrash = services();
    withRefusingTrash.deleteService = &refusing;
    HotkeyDispatcher strict(state, manager, &chrome, withRefusingTrash);
    open(3);
    LogCapture log;
    press(HotkeyAction::deleteFile, &strict);
    EXPECT_EQ(state.imageFiles(), original);
    EXPECT_TRUE(state.deletedFilesHistory().isEmpty());
    EXPECT_FALSE(state.isDeleting);
    ASSERT_EQ(chrome.alerts.size(), 1);
    EXPECT_TRUE(chrome.alerts.constFirst().endsWith(QStringLiteral("，文件可能被其他程序占用或权限不足")))
        << qPrintable(chrome.alerts.constFirst());
    EXPECT_TRUE(log.contains(QStringLiteral("HotkeyDispatcher - 文件删除失败: Permission denied")));
}

TEST_F(Dispatcher, RestoreAfterTheTrashWasEmptiedKeepsTheRecord)
{
    open(3);
    press(HotkeyAction::deleteFile);
    ASSERT_TRUE(QDir(TrashDirectories::homeTrash()).removeRecursively());
    LogCapture log;
    press(HotkeyAction::restoreFile);
    EXPECT_EQ(state.deletedFilesHistory().size(), 1);
    EXPECT_EQ(state.imageFiles(), original.mid(1));
    EXPECT_TRUE(log.contains(QStringLiteral("HotkeyDispatcher - 文件恢复失败: ") + original.at(0)));
}

TEST_F(Dispatcher, RestoreWhenTheNameWasTakenMeanwhileOverwritesNothing)
{
    open(3);
    press(HotkeyAction::deleteFile);
    folder.write(original.at(0), QByteArrayLiteral("a new picture"));
    press(HotkeyAction::restoreFile);
    EXPECT_EQ(folder.read(original.at(0)), QByteArrayLiteral("a new picture"));
    EXPECT_EQ(state.deletedFilesHistory().size(), 1);
}

TEST_F(Dispatcher, TagsSurviveDeleteAndRestore)
{
    open(3);
    ASSERT_TRUE(tags.setTags(folder.filePath(original.at(0)), {"Client", "red"}));
    press(HotkeyAction::deleteFile);
    const auto trashed = state.deletedFilesHistory().constFirst().trashFileURL;
    ASSERT_TRUE(trashed);
    EXPECT_EQ(state.deletedFilesHistory().constFirst().originalTags, QStringList({"Client", "red"}));
    // A trash that loses attributes on the way (a copy by another tool): the dispatcher must write them back.
    ::removexattr(QFile::encodeName(*trashed).constData(), "user.xdg.tags");
    press(HotkeyAction::restoreFile);
    EXPECT_EQ(tagsOnDisk(original.at(0)), QStringList({"Client", "red"}));
    EXPECT_EQ(state.fileTags().value(original.at(0)), QStringList({"Client", "red"}));
    EXPECT_EQ(state.imageAnnotations().value(original.at(0)).colors, QStringList({"red"}));
}

TEST_F(Dispatcher, OnACardWithoutExtendedAttributesTagsBehaveTheSame)
{
    XattrTagStore cardOnly(&cardTags, [](const QString&) { return true; });
    DispatcherServices withCardTags = services();
    withCardTags.tags = &cardOnly;
    HotkeyDispatcher onCard(state, manager, &chrome, withCardTags);
    open(3);
    press(HotkeyAction::annotateGreen, &onCard);
    EXPECT_EQ(cardOnly.tags(folder.filePath(original.at(0))), QStringList({"green"}));
    EXPECT_TRUE(folder.exists(QStringLiteral("_index/file_tags.json")));
    press(HotkeyAction::deleteFile, &onCard);
    press(HotkeyAction::restoreFile, &onCard);
    EXPECT_EQ(cardOnly.tags(folder.filePath(original.at(0))), QStringList({"green"}));
    EXPECT_EQ(state.imageAnnotations().value(original.at(0)).colors, QStringList({"green"}));
}

TEST_F(Dispatcher, AnnotatingTogglesOneColourAndKeepsOtherTags)
{
    open(2);
    ASSERT_TRUE(tags.setTags(folder.filePath(original.at(0)), {"Portfolio"}));
    press(HotkeyAction::annotateRed);
    EXPECT_EQ(tagsOnDisk(original.at(0)), QStringList({"Portfolio", "red"}));
    EXPECT_EQ(state.imageAnnotations().value(original.at(0)).colors, QStringList({"red"}));
    press(HotkeyAction::annotatePurple);
    press(HotkeyAction::annotateRed);
    EXPECT_EQ(tagsOnDisk(original.at(0)), QStringList({"Portfolio", "purple"}));
    EXPECT_EQ(state.imageAnnotations().value(original.at(0)).colors, QStringList({"purple"}));
}

TEST_F(Dispatcher, MovesByOneAndByARowAndStaysAtTheEdges)
{
    open(10);
    state.setImagesPerRow(4);
    const auto expectAfter = [this](HotkeyAction action, int index) {
        dispatcher.perform(action);
        EXPECT_EQ(state.selectedImageIndex(), index) << qPrintable(rawValue(action));
    };
    expectAfter(HotkeyAction::navigatePrevious, 0);
    expectAfter(HotkeyAction::navigateNext, 1);
    expectAfter(HotkeyAction::navigateDown, 5);
    expectAfter(HotkeyAction::navigateDown, 9);
    expectAfter(HotkeyAction::navigateDown, 9);
    expectAfter(HotkeyAction::navigateNext, 9);
    expectAfter(HotkeyAction::navigateUp, 5);
    EXPECT_EQ(state.lastNavigationDirection, NavigationDirection::up);
}

TEST_F(Dispatcher, WithoutASelectionActionsOnlyLog)
{
    open(3);
    state.clearSelection();
    LogCapture log;
    for (HotkeyAction action : {HotkeyAction::navigateNext, HotkeyAction::annotateRed,
                                HotkeyAction::deleteFile, HotkeyAction::rotateLeft})
        press(action);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("HotkeyDispatcher - 没有选中的图像索引")), 4);
    EXPECT_EQ(state.imageFiles(), original);
    EXPECT_EQ(folder.read(original.at(0)), original.at(0).toUtf8());
    EXPECT_FALSE(state.isRotateIndicatorVisible);
}

TEST_F(Dispatcher, RotatingRewritesTheFileDropsItsThumbnailAndAsksForAReload)
{
    folder.writePicture(QStringLiteral("a.png"));
    show({QStringLiteral("a.png")});
    const QString path = folder.filePath(QStringLiteral("a.png"));
    cache.setImage(QImage(8, 8, QImage::Format_RGB32), path);
    QStringList reloads;
    QObject::connect(&center, &NotificationCenter::posted, [&](const QString&, const QVariantMap& info) {
        reloads << info.value("filePath").toString();
    });
    press(HotkeyAction::rotateLeft);
    EXPECT_EQ(QImageReader(path).size(), QSize(48, 64));
    EXPECT_FALSE(cache.image(path));
    EXPECT_EQ(reloads, QStringList({path}));
    EXPECT_TRUE(state.isRotateIndicatorVisible);
}

TEST_F(Dispatcher, AHeldRotateKeyTurnsOncePerPress)
{
    folder.writePicture(QStringLiteral("a.jpg"));
    show({QStringLiteral("a.jpg")});
    for (int i = 0; i < 3; ++i)
        dispatcher.perform(HotkeyAction::rotateLeft);
    ASSERT_TRUE(waitUntil([this] { return !dispatcher.isBusy(); }));
    EXPECT_EQ(ExifOrientation::read(folder.filePath(QStringLiteral("a.jpg"))), 6); // 1 → 8 → 3 → 6
    EXPECT_EQ(folder.entries(), QStringList({"a.jpg"}));
}

TEST_F(Dispatcher, FormatsThatCannotBeRewrittenTurnOnScreenAndOthersReportAnError)
{
    folder.write(QStringLiteral("a.heic"), QByteArrayLiteral("heic"));
    folder.write(QStringLiteral("notes.txt"));
    show({QStringLiteral("a.heic"), QStringLiteral("notes.txt")});
    press(HotkeyAction::rotateLeft);
    EXPECT_EQ(state.rotationOverrides().value(QStringLiteral("a.heic")), 270);
    press(HotkeyAction::rotateLeft);
    EXPECT_EQ(state.rotationOverrides().value(QStringLiteral("a.heic")), 180);
    EXPECT_EQ(folder.read(QStringLiteral("a.heic")), QByteArrayLiteral("heic"));
    state.select(1);
    press(HotkeyAction::rotateLeft);
    EXPECT_TRUE(state.isRotateErrorVisible);
    EXPECT_TRUE(state.rotateErrorMessage.value_or(QString()).startsWith(QStringLiteral("不支持的图像格式")));
}

TEST_F(Dispatcher, KeysReachTheirActionsAndTheWindow)
{
    open(3);
    EXPECT_TRUE(dispatcher.handleKey(Qt::Key_Right, Qt::NoModifier));
    EXPECT_EQ(state.selectedImageIndex(), 1);
    EXPECT_TRUE(dispatcher.handleKey(Qt::Key_F, Qt::NoModifier));
    EXPECT_TRUE(dispatcher.handleKey(Qt::Key_Tab, Qt::NoModifier));
    EXPECT_EQ(chrome.fullScreenToggles, 1);
    EXPECT_EQ(chrome.panelToggles, 1);
    EXPECT_FALSE(dispatcher.handleKey(Qt::Key_Q, Qt::NoModifier));
}

TEST_F(Dispatcher, FolderKeysMoveAmongSiblingFolders)
{
    const QString a = folder.makeFolder(QStringLiteral("A"));
    const QString b = folder.makeFolder(QStringLiteral("B"));
    folder.write(QStringLiteral("B/x.jpg"));
    state.setFolderPath(a, a, a);
    dispatcher.perform(HotkeyAction::navigateFolderNext);
    ASSERT_TRUE(waitUntil([&] { return state.imageFiles() == QStringList{QStringLiteral("x.jpg")}; }));
    EXPECT_EQ(state.currentFolder(), b);
    dispatcher.perform(HotkeyAction::navigateFolderNext);
    EXPECT_EQ(state.currentFolder(), b);
}

TEST_F(Dispatcher, ARestoredPictureKeepsItsStarsAndComesBackIntoAFilteredList)
{
    open(4);
    state.select(1);
    dispatcher.rate({RatingChange::Kind::togglePick});
    press(HotkeyAction::deleteFile);
    press(HotkeyAction::restoreFile);
    EXPECT_EQ(state.rating(original.at(1)).flag, PickFlag::picked); // its sidecar came back with it

    state.setPictureFilter(PictureFilter{true});
    ASSERT_EQ(state.imageFiles(), QStringList{original.at(1)});
    press(HotkeyAction::deleteFile);
    EXPECT_TRUE(state.imageFiles().isEmpty());
    press(HotkeyAction::restoreFile);
    EXPECT_EQ(state.imageFiles(), QStringList{original.at(1)});
    state.setPictureFilter({});
    EXPECT_EQ(state.imageFiles(), original);
    EXPECT_EQ(state.selectedImageFileName(), original.at(1));
}
