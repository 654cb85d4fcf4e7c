// SPDX-License-Identifier: GPL-3.0-or-later
// The window driven from the keyboard over a real folder: moving, tagging, deleting and restoring, turning,
// switching modes; what the state, the status bar, the preview and the disk show afterwards.
#include "app/MainWindow.h"
#include "app/BrowseMode.h"
#include "app/BrowseStatusBar.h"
#include "app/CompareView.h"
#include "app/FolderPanel.h"
#include "app/GridPreviewMode.h"
#include "app/IndicatorOverlay.h"
#include "app/KeyHelpDialog.h"
#include "app/LoupeView.h"
#include "app/PreviewView.h"
#include "app/ShootingInfoOverlay.h"
#include "app/ThumbnailScrollView.h"
#include "browse/state/FolderLoader.h"
#include "browse/state/LMRModeState.h"
#include "browse/state/ModeStatePersistence.h"
#include "browse/thumbnails/ThumbnailLoader.h"
#include "platform/ExifOrientation.h"
#include "platform/QSettingsStore.h"
#include "tests/support/HostilePictures.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QStandardPaths>
#include <QTest>

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using testing::LogCapture;
using testing::TempFolder;
using testing::waitUntil;

class MainWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        for (int i = 0; i < 12; ++i)
            m_folder.writePicture(QStringLiteral("IMG_%1.jpg").arg(i, 2, 10, QLatin1Char('0')),
                                  QSize(96, 64));
        m_window.resize(1000, 700);
        m_window.show();
    }

    browse::LMRModeState& state() { return m_window.state(); }
    void open(const QString& folder)
    {
        m_window.openFolder(folder);
        ASSERT_TRUE(waitUntil([&] { return !state().isLoadingImages && state().imageFiles().size() == 12; }));
    }
    // A key press where the user's focus is: the grid of the mode on screen.
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWidget* target = &m_window.mode(m_window.currentModeIndex()).thumbnails();
        QTest::keyClick(target, Qt::Key(key), modifiers);
    }
    QString trashed(const QString& name) const
    {
        return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
               QStringLiteral("/Trash/files/") + name;
    }

    TempFolder m_folder;
    MainWindow m_window;
};

TEST_F(MainWindowTest, OpensAFolderAndSelectsTheFirstPicture)
{
    LogCapture log;
    open(m_folder.path());
    EXPECT_EQ(state().selectedImageIndex(), 0);
    EXPECT_EQ(m_window.browseStatusBar().fileText(), QStringLiteral("IMG_00.jpg"));
    EXPECT_EQ(m_window.browseStatusBar().countText(), QStringLiteral("1 / 12"));
    EXPECT_TRUE(
        log.contains(QStringLiteral("LMRMode1View - 开始加载文件夹: ") + QDir::cleanPath(m_folder.path())));
    ASSERT_TRUE(waitUntil([&] { return log.countStartingWith(QStringLiteral("PERF-FIRST-SCREEN: ")) == 1; }));
}

TEST_F(MainWindowTest, ArrowKeysMoveByOneAndByARow)
{
    open(m_folder.path());
    press(Qt::Key_Right);
    EXPECT_EQ(state().selectedImageIndex(), 1);
    press(Qt::Key_Down);
    EXPECT_EQ(state().selectedImageIndex(), 1 + state().imagesPerRow());
    press(Qt::Key_Left);
    EXPECT_EQ(state().selectedImageIndex(), state().imagesPerRow());
    EXPECT_EQ(m_window.browseStatusBar().countText(),
              QStringLiteral("%1 / 12").arg(state().imagesPerRow() + 1));
}

TEST_F(MainWindowTest, HoldingRightNeverShowsAnotherFilesPicture)
{
    open(m_folder.path());
    const auto& preview = static_cast<GridPreviewMode&>(m_window.mode(0)).preview();
    for (int i = 1; i < 12; ++i) {
        press(Qt::Key_Right);
        const QString selected = m_folder.filePath(*state().selectedImageFileName());
        EXPECT_EQ(QDir::cleanPath(preview.shownPath()), QDir::cleanPath(selected));
    }
    EXPECT_EQ(state().selectedImageIndex(), 11);
    ASSERT_TRUE(waitUntil([&] { return preview.isShowingPreview(); }));
    EXPECT_EQ(QDir::cleanPath(preview.shownPath()),
              QDir::cleanPath(m_folder.filePath(QStringLiteral("IMG_11.jpg"))));
}

TEST_F(MainWindowTest, ColourKeyTagsTheSelectedPicture)
{
    open(m_folder.path());
    press(Qt::Key_Right);
    press(Qt::Key_1);
    EXPECT_EQ(state().imageAnnotations().value(QStringLiteral("IMG_01.jpg")).colors,
              QStringList{QStringLiteral("red")});
    press(Qt::Key_1);
    EXPECT_TRUE(state().imageAnnotations().value(QStringLiteral("IMG_01.jpg")).colors.isEmpty());
}

TEST_F(MainWindowTest, RatingKeysWriteTheSidecarAndAnotherFolderOfTheSameNamesKeepsItsOwn)
{
    open(m_folder.path());
    press(Qt::Key_Right);
    press(Qt::Key_3, Qt::AltModifier);
    press(Qt::Key_P);
    const platform::PictureMarks rated{3, platform::PickFlag::picked};
    EXPECT_EQ(state().rating(QStringLiteral("IMG_01.jpg")), rated);
    EXPECT_TRUE(m_folder.exists(QStringLiteral("IMG_01.jpg.xmp")));

    TempFolder second; // a second card: the same file names, nothing rated
    for (int i = 0; i < 12; ++i)
        second.writePicture(QStringLiteral("IMG_%1.jpg").arg(i, 2, 10, QLatin1Char('0')), QSize(96, 64));
    bool read = false;
    QObject::connect(&m_window.mode(m_window.currentModeIndex()).folderLoader(),
                     &browse::FolderLoader::tagsLoaded, [&read] { read = true; });
    open(second.path());
    ASSERT_TRUE(waitUntil([&] { return read; }));
    EXPECT_TRUE(state().ratings().isEmpty());
    EXPECT_FALSE(second.exists(QStringLiteral("IMG_01.jpg.xmp")));
    open(m_folder.path());
    EXPECT_TRUE(waitUntil([&] { return state().rating(QStringLiteral("IMG_01.jpg")) == rated; }));
}

TEST_F(MainWindowTest, TheLoupeShowsFullSizeKeepsItsZoomFromPictureToPictureAndTheDataKeyShowsTheShot)
{
    m_folder.writePicture(QStringLiteral("IMG_00.jpg"), QSize(2400, 1600)); // bigger than any preview
    m_folder.writePicture(QStringLiteral("IMG_01.jpg"), QSize(2400, 1600), Qt::darkRed);
    open(m_folder.path());
    press(Qt::Key_Z);
    LoupeView& loupe = m_window.loupe();
    ASSERT_TRUE(loupe.isOpen());
    ASSERT_TRUE(waitUntil([&] { return loupe.isShowingFullSize(); }));
    EXPECT_EQ(loupe.shownPath(), m_folder.filePath(QStringLiteral("IMG_00.jpg")));
    loupe.zoomBy(1);
    press(Qt::Key_Right);
    EXPECT_EQ(loupe.shownPath(), m_folder.filePath(QStringLiteral("IMG_01.jpg"))) << "never the last picture";
    EXPECT_EQ(loupe.zoom(), 2.0);
    ASSERT_TRUE(waitUntil([&] { return loupe.isShowingFullSize(); }));
    press(Qt::Key_Escape);
    EXPECT_FALSE(loupe.isOpen());

    press(Qt::Key_I);
    ASSERT_TRUE(waitUntil([&] {
        return m_window.shootingInfo().lines().contains(QStringLiteral("像素  2400 × 1600 (3.8 MP)"));
    }));
    press(Qt::Key_2, Qt::AltModifier);
    EXPECT_TRUE(m_window.shootingInfo().lines().contains(QStringLiteral("评级  ★★☆☆☆")));
    EXPECT_TRUE(KeyHelpDialog::rows().contains({QStringLiteral("P"), QStringLiteral("标为精选 / 取消精选")}));
}

TEST_F(MainWindowTest, FilterKeysShowOnlyThePicksAndClearingStaysOnThePicture)
{
    open(m_folder.path());
    press(Qt::Key_Right);
    press(Qt::Key_P);
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    press(Qt::Key_P, Qt::ShiftModifier);
    EXPECT_EQ(state().imageFiles(), QStringList{QStringLiteral("IMG_01.jpg")});
    EXPECT_EQ(state().selectedImageFileName(), QStringLiteral("IMG_01.jpg"));
    EXPECT_TRUE(m_window.browseStatusBar().countText().startsWith(QStringLiteral("筛选: 仅精选")));
    press(Qt::Key_A, Qt::ShiftModifier);
    EXPECT_EQ(state().imageFiles().size(), 12);
    EXPECT_EQ(state().selectedImageFileName(), QStringLiteral("IMG_01.jpg"));
}

TEST_F(MainWindowTest, CompareShowsTwoToFourNeighboursAtOneZoom)
{
    open(m_folder.path());
    CompareView& compare = m_window.compare();
    press(Qt::Key_C);
    ASSERT_TRUE(compare.isOpen());
    EXPECT_EQ(compare.shownPaths(), (QStringList{m_folder.filePath(QStringLiteral("IMG_00.jpg")),
                                                 m_folder.filePath(QStringLiteral("IMG_01.jpg"))}));
    press(Qt::Key_C);
    EXPECT_EQ(compare.shownPaths().size(), 3);
    for (int i = 0; i < 4; ++i)
        press(Qt::Key_Right); // past the run's end: the run moves along
    EXPECT_EQ(compare.shownPaths().constLast(), m_folder.filePath(QStringLiteral("IMG_04.jpg")));
    press(Qt::Key_Z);
    EXPECT_EQ(compare.frame().zoom, 1.0);
    ASSERT_TRUE(waitUntil([&] {
        return std::all_of(compare.shownPaths().cbegin(), compare.shownPaths().cend(),
                           [&](const QString& path) { return compare.isShowingFullSize(path); });
    }));
    press(Qt::Key_C);
    press(Qt::Key_C); // past four panes: closed
    EXPECT_FALSE(compare.isOpen());
}

TEST_F(MainWindowTest, OnTheHomePageTheCullingKeysLeaveThePicturesAlone)
{
    open(m_folder.path());
    m_window.showHome();
    ASSERT_TRUE(m_window.isHomeShown());
    press(Qt::Key_D); // the selected picture is not on screen: deleting it would be deleting blind
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_folder.exists(QStringLiteral("IMG_00.jpg")));
    EXPECT_EQ(state().imageFiles().size(), 12);
    m_window.openFolder(m_folder.path());
    EXPECT_FALSE(m_window.isHomeShown());
}

TEST_F(MainWindowTest, DeleteMovesToTheTrashAndRestoreBringsItBack)
{
    open(m_folder.path());
    press(Qt::Key_Right);
    press(Qt::Key_D);
    ASSERT_TRUE(waitUntil([&] { return state().imageFiles().size() == 11; }));
    EXPECT_FALSE(m_folder.exists(QStringLiteral("IMG_01.jpg")));
    EXPECT_TRUE(QFile::exists(trashed(QStringLiteral("IMG_01.jpg"))));
    EXPECT_EQ(state().selectedImageFileName(), QStringLiteral("IMG_02.jpg"));
    EXPECT_EQ(m_window.mode(0).overlay().currentText(), QStringLiteral("已删除"));

    press(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return state().imageFiles().size() == 12; }));
    EXPECT_TRUE(m_folder.exists(QStringLiteral("IMG_01.jpg")));
    EXPECT_EQ(state().selectedImageIndex(), 1);
    ASSERT_TRUE(waitUntil([&] { return m_window.mode(0).overlay().currentText().isEmpty(); }));
    EXPECT_FALSE(state().isRestoreIndicatorVisible);
}

TEST_F(MainWindowTest, RotateKeyTurnsTheJpegOnDisk)
{
    open(m_folder.path());
    const QString path = m_folder.filePath(QStringLiteral("IMG_00.jpg"));
    ASSERT_EQ(platform::ExifOrientation::read(path), 1);
    press(Qt::Key_R);
    ASSERT_TRUE(waitUntil([&] { return platform::ExifOrientation::read(path) == 8; }));
    // The grid reloads the turned thumbnail: it stands upright now.
    ASSERT_TRUE(waitUntil([&] {
        const auto thumb = m_window.thumbnailLoader().thumbnail(path);
        return thumb && thumb->height() > thumb->width();
    }));
}

TEST_F(MainWindowTest, SwitchingModesKeepsTheSharedStateAndTheKeysWork)
{
    open(m_folder.path());
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    LogCapture log;
    for (int mode : {int(MainWindow::filmStripMode), int(MainWindow::waterfallMode)}) {
        m_window.switchMode(mode);
        EXPECT_EQ(m_window.currentModeIndex(), mode);
        EXPECT_EQ(state().selectedImageIndex(),
                  mode + 1); // 2 after the first switch, one more in the waterfall
        press(Qt::Key_Right);
    }
    EXPECT_EQ(state().selectedImageIndex(), 4);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("ContentView - 模式切换，共享状态已保存到UserDefaults")),
              2);
    EXPECT_TRUE(log.contains(QStringLiteral("LMRMode2View - 初始化完成，使用共享状态")));
    EXPECT_TRUE(log.contains(QStringLiteral("LMRMode3View - 初始化完成，使用共享状态")));
}

// A picture that cannot be read shows as a failed tile. The folder is remembered for the next start only once
// its first screen is drawn, so a folder that brought the app down is not reopened at every start.
TEST_F(MainWindowTest, ADamagedRawShowsAsFailedAndTheFolderIsRememberedOnceShown)
{
    m_folder.write(QStringLiteral("IMG_00a.CR2"), testing::selfReferencingCr2());
    platform::SettingsStore& settings = platform::QSettingsStore::shared();
    settings.remove(browse::settingsKeys::originalFolderPath); // left by an earlier test of this process
    const auto remembered = [&] { return settings.string(browse::settingsKeys::originalFolderPath); };
    LogCapture log;
    m_window.openFolder(m_folder.path());
    EXPECT_FALSE(remembered().has_value());
    ASSERT_TRUE(waitUntil([&] { return log.countStartingWith(QStringLiteral("PERF-FIRST-SCREEN: ")) == 1; }));
    EXPECT_EQ(remembered(), QDir::cleanPath(m_folder.path()));
    EXPECT_TRUE(m_window.thumbnailLoader().hasFailed(m_folder.filePath(QStringLiteral("IMG_00a.CR2")),
                                                     browse::PictureKind::thumbnail));
}

TEST_F(MainWindowTest, EmptyFolderShowsAnEmptyGridWithAReason)
{
    TempFolder empty;
    m_window.openFolder(empty.path());
    ASSERT_TRUE(waitUntil([&] { return !state().isLoadingImages; }));
    EXPECT_TRUE(state().imageFiles().isEmpty());
    EXPECT_FALSE(state().selectedImageIndex().has_value());
    EXPECT_EQ(m_window.mode(0).thumbnails().emptyText(), QStringLiteral("此文件夹中没有可浏览的图片"));

    m_window.openFolder(empty.filePath(QStringLiteral("gone")));
    ASSERT_TRUE(waitUntil([&] {
        return m_window.mode(0).thumbnails().emptyText().startsWith(QStringLiteral("文件夹不存在"));
    }));
}

TEST_F(MainWindowTest, FolderKeyTogglesThePanelWhichListsSubfoldersAndWalksDeep)
{
    m_folder.writePicture(QStringLiteral("b/x.jpg"));
    m_folder.writePicture(QStringLiteral("a/deeper/y.jpg"));
    m_folder.writePicture(QStringLiteral("a/z.png"));
    open(m_folder.path());
    EXPECT_FALSE(m_window.isFolderPanelShown());
    press(Qt::Key_Tab);
    EXPECT_TRUE(m_window.isFolderPanelShown());
    FolderPanel& panel = m_window.folderPanel();
    ASSERT_TRUE(waitUntil([&] { return panel.listedFolders().size() == 2; }));
    EXPECT_EQ(QFileInfo(panel.listedFolders().at(0)).fileName(), QStringLiteral("a"));

    panel.setDeepMode(true);
    ASSERT_TRUE(
        waitUntil([&] { return state().isInDeepMode() && state().recursiveDirectoryList().size() == 4; }));
    press(Qt::Key_PageDown);
    ASSERT_TRUE(
        waitUntil([&] { return !state().isLoadingImages && state().imageFiles() == QStringList{"z.png"}; }));
    EXPECT_EQ(QFileInfo(*state().currentFolder()).fileName(), QStringLiteral("a"));
    press(Qt::Key_PageDown);
    ASSERT_TRUE(
        waitUntil([&] { return !state().isLoadingImages && state().imageFiles() == QStringList{"y.jpg"}; }));
}

} // namespace
} // namespace lumaro::app
