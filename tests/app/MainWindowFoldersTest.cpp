// SPDX-License-Identifier: GPL-3.0-or-later
// The window over several real folders: in deep mode every key acts on the folder the picture is listed from,
// tags and annotations belong to the folder shown and come from the files, a lost history record can be
// passed.
#include "app/BrowseMode.h"
#include "app/FolderPanel.h"
#include "app/MainWindow.h"
#include "app/ThumbnailScrollView.h"
#include "browse/hotkeys/HotkeyDispatcher.h"
#include "browse/state/LMRModeState.h"
#include "platform/ExifOrientation.h"
#include "platform/TrashDirectories.h"
#include "platform/XattrTagStore.h"
#include "platform/files/FileNameCodec.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QTest>

#include <gtest/gtest.h>

#include <cstdio>

namespace lumaro::app {
namespace {

using testing::TempFolder;
using testing::waitUntil;

class MainWindowFoldersTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_window.resize(1000, 700);
        m_window.show();
        m_window.activateWindow(); // window shortcuts (F5) need the active window
    }

    browse::LMRModeState& state() { return m_window.state(); }
    void open(const QString& folder, int count)
    {
        m_window.openFolder(folder);
        ASSERT_TRUE(
            waitUntil([&] { return !state().isLoadingImages && state().imageFiles().size() == count; }));
    }
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&m_window.mode(m_window.currentModeIndex()).thumbnails(), Qt::Key(key), modifiers);
    }
    void selectName(const QString& name)
    {
        ASSERT_TRUE(state().select(int(state().imageFiles().indexOf(name)))) << qPrintable(name);
    }
    QStringList tagsOf(const QString& path)
    {
        return platform::XattrTagStore::shared().tags(path).value_or(QStringList{"?"});
    }
    bool hasXattrs()
    {
        const QString probe = m_folder.write(QStringLiteral("probe.txt"));
        return platform::XattrTagStore::shared().setTags(probe, {QStringLiteral("x")});
    }

    TempFolder m_folder;
    MainWindow m_window;
};

TEST_F(MainWindowFoldersTest, InDeepModeEveryKeyActsOnTheListedFolder)
{
    if (!hasXattrs())
        GTEST_SKIP() << "no user extended attributes on this file system";
    m_folder.writePicture(QStringLiteral("IMG_1.jpg"), QSize(96, 64), Qt::red);
    m_folder.writePicture(QStringLiteral("sub/IMG_1.jpg"), QSize(96, 64), Qt::blue);
    m_folder.writePicture(QStringLiteral("sub/IMG_2.jpg"), QSize(96, 64), Qt::blue);
    m_folder.writePicture(QStringLiteral("sub/only here.jpg"), QSize(96, 64), Qt::blue);
    const QByteArray baseBytes = m_folder.read(QStringLiteral("IMG_1.jpg"));
    open(m_folder.path(), 1);
    m_window.folderPanel().setDeepMode(true);
    ASSERT_TRUE(
        waitUntil([&] { return state().isInDeepMode() && state().recursiveDirectoryList().size() == 2; }));
    press(Qt::Key_PageDown);
    ASSERT_TRUE(waitUntil([&] { return !state().isLoadingImages && state().imageFiles().size() == 3; }));

    const QString sub = m_folder.filePath(QStringLiteral("sub"));
    selectName(QStringLiteral("IMG_2.jpg"));
    press(Qt::Key_1);
    EXPECT_EQ(tagsOf(sub + QStringLiteral("/IMG_2.jpg")), QStringList{QStringLiteral("red")});
    press(Qt::Key_R);
    ASSERT_TRUE(
        waitUntil([&] { return platform::ExifOrientation::read(sub + QStringLiteral("/IMG_2.jpg")) == 8; }));

    selectName(QStringLiteral("IMG_1.jpg"));
    press(Qt::Key_D);
    ASSERT_TRUE(waitUntil([&] { return state().imageFiles().size() == 2; }));
    selectName(QStringLiteral("only here.jpg"));
    // A second D within the doubled-press guard would be refused; the action itself is what is tested here.
    m_window.dispatcher().perform(browse::HotkeyAction::deleteFile);
    ASSERT_TRUE(waitUntil([&] { return state().imageFiles().size() == 1 && !state().isDeleting; }));
    EXPECT_FALSE(QFile::exists(sub + QStringLiteral("/IMG_1.jpg")));
    EXPECT_FALSE(QFile::exists(sub + QStringLiteral("/only here.jpg")));
    EXPECT_EQ(m_folder.read(QStringLiteral("IMG_1.jpg")),
              baseBytes); // the base folder's namesake is untouched

    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return state().imageFiles().size() == 2; }));
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return state().imageFiles().size() == 3; }));
    EXPECT_TRUE(QFile::exists(sub + QStringLiteral("/IMG_1.jpg")));
    EXPECT_TRUE(QFile::exists(sub + QStringLiteral("/only here.jpg")));
    EXPECT_EQ(m_folder.read(QStringLiteral("IMG_1.jpg")), baseBytes);
}

TEST_F(MainWindowFoldersTest, TagsBelongToTheFolderShownAndComeFromTheFiles)
{
    if (!hasXattrs())
        GTEST_SKIP() << "no user extended attributes on this file system";
    const QString cardA = m_folder.makeFolder(QStringLiteral("A"));
    const QString cardB = m_folder.makeFolder(QStringLiteral("B"));
    for (const QString card : {QStringLiteral("A"), QStringLiteral("B")}) {
        for (int i = 1; i <= 3; ++i)
            m_folder.writePicture(QStringLiteral("%1/IMG_000%2.JPG").arg(card).arg(i));
    }
    // Set by another program before the folder is opened.
    auto& tags = platform::XattrTagStore::shared();
    ASSERT_TRUE(tags.setTags(cardA + QStringLiteral("/IMG_0002.JPG"),
                             {QStringLiteral("Urlaub"), QStringLiteral("green")}));

    open(cardA, 3);
    ASSERT_TRUE(waitUntil([&] {
        return state().imageAnnotations().value(QStringLiteral("IMG_0002.JPG")).colors ==
               QStringList{"green"};
    }));

    open(cardB, 3);
    ASSERT_TRUE(waitUntil([&] { return state().isLoadingImages == false; }));
    EXPECT_TRUE(state().imageAnnotations().isEmpty());
    selectName(QStringLiteral("IMG_0002.JPG"));
    press(Qt::Key_4); // green: card B's file did not have it, so it gets it
    EXPECT_EQ(tagsOf(cardB + QStringLiteral("/IMG_0002.JPG")), QStringList{QStringLiteral("green")});
    EXPECT_EQ(tagsOf(cardA + QStringLiteral("/IMG_0002.JPG")),
              (QStringList{QStringLiteral("Urlaub"), QStringLiteral("green")}));

    // Changed by another program meanwhile; a reload shows it, and the colour key toggles what the file has.
    ASSERT_TRUE(tags.setTags(cardB + QStringLiteral("/IMG_0003.JPG"), {QStringLiteral("blue")}));
    QTest::keyClick(&m_window, Qt::Key_F5);
    ASSERT_TRUE(waitUntil([&] {
        return state().imageAnnotations().value(QStringLiteral("IMG_0003.JPG")).colors == QStringList{"blue"};
    }));
    selectName(QStringLiteral("IMG_0003.JPG"));
    press(Qt::Key_5);
    EXPECT_EQ(tagsOf(cardB + QStringLiteral("/IMG_0003.JPG")), QStringList());
    EXPECT_FALSE(state().imageAnnotations().contains(QStringLiteral("IMG_0003.JPG")));
}

TEST_F(MainWindowFoldersTest, ARecordThatCannotComeBackIsPassedOnTheNextRestore)
{
    for (int i = 1; i <= 4; ++i)
        m_folder.writePicture(QStringLiteral("IMG_%1.jpg").arg(i));
    open(m_folder.path(), 4);
    for (const QString name : {QStringLiteral("IMG_1.jpg"), QStringLiteral("IMG_2.jpg")}) {
        selectName(name);
        m_window.dispatcher().perform(browse::HotkeyAction::deleteFile); // two deletes, past the doubled-press guard
        ASSERT_TRUE(waitUntil([&] { return !state().imageFiles().contains(name) && !state().isDeleting; }));
    }
    // IMG_2.jpg's item is gone from the Trash (emptied by hand).
    const QString trash = platform::TrashDirectories::homeTrash();
    ASSERT_TRUE(QFile::remove(trash + QStringLiteral("/files/IMG_2.jpg")));
    ASSERT_TRUE(QFile::remove(trash + QStringLiteral("/info/IMG_2.jpg.trashinfo")));

    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return !m_window.dispatcher().isBusy(); }));
    EXPECT_EQ(state().deletedFilesHistory().size(), 2); // a failed restore changes nothing
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return state().imageFiles().contains(QStringLiteral("IMG_1.jpg")); }));
    EXPECT_TRUE(m_folder.exists(QStringLiteral("IMG_1.jpg")));
    EXPECT_TRUE(state().deletedFilesHistory().isEmpty());
}

TEST_F(MainWindowFoldersTest, ANameThatIsNotUtf8IsListedTaggedTurnedDeletedAndRestored)
{
    using platform::FileNameCodec;
    const QString written = m_folder.writePicture(QStringLiteral("tmp.jpg"));
    m_folder.writePicture(QStringLiteral("z.jpg"));
    const QByteArray raw = QFile::encodeName(m_folder.path()) + "/caf\xe9.jpg";
    ASSERT_EQ(std::rename(QFile::encodeName(written).constData(), raw.constData()), 0);
    const QString path = FileNameCodec::decode(raw);
    open(m_folder.path(), 2);
    ASSERT_EQ(FileNameCodec::encode(QDir(m_folder.path()).filePath(state().imageFiles().at(0))), raw);

    selectName(state().imageFiles().at(0));
    const bool tags = hasXattrs();
    press(Qt::Key_1);
    if (tags)
        EXPECT_EQ(tagsOf(path), QStringList{QStringLiteral("red")});
    press(Qt::Key_R);
    ASSERT_TRUE(waitUntil([&] { return platform::ExifOrientation::read(path) == 8; }));
    ASSERT_TRUE(waitUntil([&] { return !m_window.dispatcher().isBusy(); }));
    press(Qt::Key_D);
    ASSERT_TRUE(waitUntil([&] { return state().imageFiles().size() == 1 && !state().isDeleting; }));
    EXPECT_FALSE(FileNameCodec::exists(path));
    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return state().imageFiles().size() == 2; }));
    EXPECT_TRUE(FileNameCodec::exists(path));
    if (tags)
        EXPECT_EQ(tagsOf(path), QStringList{QStringLiteral("red")});
}

} // namespace
} // namespace lumaro::app
