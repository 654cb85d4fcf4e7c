// SPDX-License-Identifier: GPL-3.0-or-later
// One press, one action: key presses into the dispatcher with a held key's repeats and a doubled delete
// press, on a real folder and the real Trash, with the clock injected.
#include "browse/hotkeys/HotkeyDispatcher.h"

#include "browse/marks/RatingChange.h"
#include "platform/FileTagStore.h"
#include "platform/metadata/XmpSidecar.h"
#include "tests/browse/hotkeys/DispatcherRig.h"

using namespace lumaro::browse;
using namespace lumaro::platform;
using lumaro::testing::TempFolder;
using lumaro::testing::waitUntil;

namespace {

// Tags that cannot be written, as on a read-only card.
class RefusingTagStore : public FileTagStore
{
public:
    std::optional<QStringList> tags(const QString&, QString*) const override { return QStringList(); }
    bool setTags(const QString&, const QStringList&, QString* error) override
    {
        if (error)
            *error = QStringLiteral("Read-only file system");
        return false;
    }
};

class KeyPresses : public DispatcherRig
{
protected:
    void SetUp() override { open(6); }

    // A key press at time `at` (seconds); waits until the file work it started is done.
    void press(int key, double at, bool isAutoRepeat = false,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        now = at;
        EXPECT_TRUE(dispatcher.handleKey(key, modifiers, isAutoRepeat));
        ASSERT_TRUE(waitUntil([this] { return !dispatcher.isBusy(); }));
    }
};

} // namespace

TEST_F(KeyPresses, AHeldDeleteKeyDeletesOnePicture)
{
    press(Qt::Key_D, 1000.0);
    for (int i = 1; i <= 30; ++i)
        press(Qt::Key_D, 1000.0 + i * 0.033, true); // a second of the key's repeats
    EXPECT_EQ(state.imageFiles(), original.mid(1));
    EXPECT_EQ(folder.entries().size(), 5);
    EXPECT_EQ(state.deletedFilesHistory().size(), 1);
}

TEST_F(KeyPresses, DeletePressedTwiceWithin150MsDeletesOnePictureAndALaterPressAnother)
{
    press(Qt::Key_D, 1000.0);
    press(Qt::Key_D, 1000.15);
    EXPECT_EQ(state.imageFiles(), original.mid(1));
    press(Qt::Key_D, 1000.6);
    EXPECT_EQ(state.imageFiles(), original.mid(2));
    EXPECT_EQ(state.deletedFilesHistory().size(), 2);
}

TEST_F(KeyPresses, HeldKeysRepeatOnlyMoves)
{
    press(Qt::Key_D, 1000.0);
    press(Qt::Key_Z, 1001.0, false, Qt::ControlModifier);
    press(Qt::Key_Z, 1001.1, true, Qt::ControlModifier);
    press(Qt::Key_Right, 1002.0);
    press(Qt::Key_Right, 1002.03, true);
    press(Qt::Key_1, 1003.0);
    press(Qt::Key_1, 1003.03, true); // a repeat would take the red tag off again
    EXPECT_EQ(state.imageFiles(), original);
    EXPECT_EQ(state.selectedImageIndex(), 2);
    EXPECT_EQ(state.imageAnnotations().value(original.at(2)).colors, QStringList{QStringLiteral("red")});
}

TEST_F(KeyPresses, WhatCouldNotBeDoneIsToldInChinese)
{
    RefusingTagStore refusing;
    DispatcherServices readOnlyTags = services();
    readOnlyTags.tags = &refusing;
    HotkeyDispatcher readOnly(state, manager, &chrome, readOnlyTags);
    readOnly.perform(HotkeyAction::annotateRed);
    readOnly.perform(HotkeyAction::restoreFile);
    ASSERT_EQ(chrome.messages.size(), 2);
    EXPECT_TRUE(chrome.messages.at(0).startsWith(QStringLiteral("无法写入标签")))
        << chrome.messages.at(0).toStdString();
    EXPECT_EQ(chrome.messages.at(1), QStringLiteral("没有可恢复的删除文件"));
    EXPECT_TRUE(state.imageAnnotations().value(original.at(0)).colors.isEmpty());
}

TEST_F(KeyPresses, TheFirstAndLastFolderAreToldAtTheEdges)
{
    TempFolder parent;
    for (const char* name : {"a", "b"})
        parent.writePicture(QStringLiteral("%1/x.jpg").arg(QLatin1String(name)));
    const QString last = parent.filePath(QStringLiteral("b"));
    state.setFolderPath(last, last, last);
    dispatcher.perform(HotkeyAction::navigateFolderNext);
    const QString first = parent.filePath(QStringLiteral("a"));
    state.setFolderPath(first, first, first);
    dispatcher.perform(HotkeyAction::navigateFolderPrevious);
    EXPECT_EQ(chrome.messages,
              QStringList({QStringLiteral("已经是最后一个文件夹"), QStringLiteral("已经是第一个文件夹")}));
}

TEST_F(KeyPresses, ABouncedPickPicksOnceAndStarsReachTheSidecar)
{
    now = 1000.0;
    dispatcher.rate({RatingChange::Kind::togglePick});
    now = 1000.1;
    dispatcher.rate({RatingChange::Kind::togglePick}); // the bounce would take the pick straight back
    dispatcher.rate(RatingChange::toStars(4));
    EXPECT_EQ(state.rating(original.at(0)), (PictureMarks{4, PickFlag::picked}));
    const auto onDisk = XmpSidecar::read(folder.filePath(original.at(0)));
    ASSERT_TRUE(onDisk);
    EXPECT_EQ(onDisk->stars, 4);
    EXPECT_EQ(onDisk->flag, PickFlag::picked);
    EXPECT_TRUE(folder.exists(original.at(0) + QStringLiteral(".xmp")));
}
