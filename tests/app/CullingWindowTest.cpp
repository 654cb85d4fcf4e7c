// SPDX-License-Identifier: GPL-3.0-or-later
// The window as a photographer meets it: held keys, quick double presses, turning twice, panels that take the
// focus, hundreds of thumbnails, messages for what could not be done, and a folder that opens as it was left.
#include "app/BrowseMode.h"
#include "app/BrowseStatusBar.h"
#include "app/FilmStripMode.h"
#include "app/GridPreviewMode.h"
#include "app/IndicatorOverlay.h"
#include "app/MainWindow.h"
#include "app/PreviewView.h"
#include "app/ThumbnailScrollView.h"
#include "browse/hotkeys/HotkeyDispatcher.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailLoader.h"
#include "platform/ExifOrientation.h"
#include "tests/support/TempFolder.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <algorithm>

namespace lumaro::app {
namespace {

using testing::TempFolder;
using testing::waitUntil;

// Left half red, right half blue: which way up it stands is visible in its pixels.
void writeTwoColourJpeg(const QString& path)
{
    QImage image(96, 64, QImage::Format_RGB32);
    image.fill(Qt::red);
    QPainter(&image).fillRect(48, 0, 48, 64, Qt::blue);
    ASSERT_TRUE(image.save(path, "JPEG", 95));
}

bool standsTurnedHalfway(const QImage& image)
{
    if (image.isNull() || image.width() <= image.height())
        return false;
    const QColor left = image.pixelColor(image.width() / 8, image.height() / 2);
    return left.blue() > 150 && left.red() < 100;
}

class CullingWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_window.resize(1000, 700);
        m_window.show();
    }

    browse::LMRModeState& state() { return m_window.state(); }
    void open(const QString& folder, int count)
    {
        m_window.openFolder(folder);
        ASSERT_TRUE(waitUntil([&] { return !state().isLoadingImages && state().imageFiles().size() == count; }));
    }
    void writePictures(int count)
    {
        for (int i = 0; i < count; ++i)
            m_folder.writePicture(QStringLiteral("IMG_%1.jpg").arg(i, 3, 10, QLatin1Char('0')), QSize(48, 32));
    }
    QWidget* grid() { return &m_window.mode(m_window.currentModeIndex()).thumbnails(); }
    // One key event as the window system delivers it, held keys repeating.
    void key(QWidget* target, QEvent::Type type, int code, bool isAutoRepeat,
             Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent event(type, code, modifiers, QString(), isAutoRepeat);
        QApplication::sendEvent(target, &event);
    }
    bool idle() { return !m_window.dispatcher().isBusy(); }

    TempFolder m_folder;
    MainWindow m_window;
};

TEST_F(CullingWindowTest, HoldingDeleteForASecondDeletesOnePicture)
{
    writePictures(12);
    open(m_folder.path(), 12);
    key(grid(), QEvent::KeyPress, Qt::Key_D, false);
    for (int i = 0; i < 30; ++i) {
        ASSERT_TRUE(waitUntil([&] { return idle(); }));
        key(grid(), QEvent::KeyPress, Qt::Key_D, true);
    }
    key(grid(), QEvent::KeyRelease, Qt::Key_D, false);
    ASSERT_TRUE(waitUntil([&] { return idle(); }));
    EXPECT_EQ(state().imageFiles().size(), 11);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files).size(), 11);
}

TEST_F(CullingWindowTest, HeldKeyRepeatsSentAsReleaseAndPressOfOneTimeStillTurnOnce)
{
    writePictures(3);
    open(m_folder.path(), 3);
    const QString path = m_folder.filePath(QStringLiteral("IMG_000.jpg"));
    const auto send = [&](QEvent::Type type, quint64 time) {
        QKeyEvent event(type, Qt::Key_R, Qt::NoModifier);
        event.setTimestamp(time);
        QApplication::sendEvent(grid(), &event);
        ASSERT_TRUE(waitUntil([&] { return idle(); }));
    };
    send(QEvent::KeyPress, 10000);
    for (quint64 t = 10660; t < 11000; t += 40) { // what X11 sends for a held key, none flagged as a repeat
        send(QEvent::KeyRelease, t);
        send(QEvent::KeyPress, t);
    }
    send(QEvent::KeyRelease, 11050);
    EXPECT_EQ(platform::ExifOrientation::read(path), 8); // one quarter turn
    send(QEvent::KeyPress, 11400); // a new press turns again
    EXPECT_EQ(platform::ExifOrientation::read(path), 3);
}

TEST_F(CullingWindowTest, TurningTwiceQuicklyShowsTheFinalOrientationInPreviewAndGrid)
{
    const QString path = m_folder.filePath(QStringLiteral("turn.jpg"));
    writeTwoColourJpeg(path);
    open(m_folder.path(), 1);
    auto& preview = static_cast<GridPreviewMode&>(m_window.mode(0)).preview();
    ASSERT_TRUE(waitUntil([&] { return preview.isShowingPreview(); }));
    QTest::keyClick(grid(), Qt::Key_R);
    QTest::keyClick(grid(), Qt::Key_R);
    ASSERT_TRUE(waitUntil([&] { return idle() && platform::ExifOrientation::read(path) == 3; }));
    EXPECT_TRUE(waitUntil([&] { return preview.isShowingPreview() && standsTurnedHalfway(preview.shownImage()); }));
    EXPECT_TRUE(waitUntil([&] { return standsTurnedHalfway(m_window.mode(0).thumbnails().tileImage(0)); }));
}

TEST_F(CullingWindowTest, CullingKeysReachTheBrowserUnlessAFieldTakesTyping)
{
    writePictures(6);
    open(m_folder.path(), 6);
    auto* panel = new QWidget;
    auto* readOnly = new QPlainTextEdit(panel);
    readOnly->setReadOnly(true);
    auto* typing = new QLineEdit(panel);
    auto* layout = new QVBoxLayout(panel);
    layout->addWidget(readOnly);
    layout->addWidget(typing);
    m_window.addToolPanel(QStringLiteral("测试面板"), panel);
    auto* dock = m_window.findChild<QDockWidget*>(QStringLiteral("测试面板"));
    ASSERT_NE(dock, nullptr);
    dock->show();

    struct Case
    {
        QWidget* focus;
        bool floating;
        int expected;
    };
    for (const Case& c : {Case{readOnly, false, 1}, Case{typing, false, 1}, Case{readOnly, true, 2}}) {
        dock->setFloating(c.floating);
        c.focus->setFocus();
        QTest::keyClick(c.focus, Qt::Key_Right);
        EXPECT_EQ(state().selectedImageIndex(), c.expected) << c.focus->metaObject()->className();
    }
    EXPECT_TRUE(typing->text().isEmpty());
}

TEST_F(CullingWindowTest, VisibleThumbnailsNeverGoMissingInAnyModeAtTenColumns)
{
    writePictures(260);
    open(m_folder.path(), 260);
    state().setImagesPerRow(10);
    for (int mode : {int(MainWindow::gridMode), int(MainWindow::filmStripMode), int(MainWindow::waterfallMode)}) {
        m_window.switchMode(mode);
        ThumbnailScrollView& view = m_window.mode(mode).thumbnails();
        const auto allShown = [&] {
            if (m_window.thumbnailLoader().queuedCount() > 0 || m_window.thumbnailLoader().runningCount() > 0)
                return false;
            const QList<int> visible = view.visibleIndices();
            return !visible.isEmpty()
                && std::all_of(visible.cbegin(), visible.cend(), [&](int i) { return !view.tileImage(i).isNull(); });
        };
        for (int at : {0, 259, 130, 0}) {
            state().select(at);
            EXPECT_TRUE(waitUntil(allShown, 15000)) << "mode " << mode << " at " << at;
        }
    }
}

TEST_F(CullingWindowTest, PaintingTilesDoesNotAskTheCache)
{
    writePictures(30);
    open(m_folder.path(), 30);
    ThumbnailScrollView& view = m_window.mode(0).thumbnails();
    ASSERT_TRUE(waitUntil([&] { return !view.tileImage(0).isNull(); }));
    const qint64 before = browse::ThumbnailCache::shared().statistics().getCount;
    for (int i = 0; i < 50; ++i)
        view.viewport()->repaint();
    EXPECT_EQ(browse::ThumbnailCache::shared().statistics().getCount, before);
}

TEST_F(CullingWindowTest, TheWindowSaysWhatCouldNotBeDoneInChinese)
{
    writePictures(3);
    m_folder.write(QStringLiteral("IMG_999.jpg"), QByteArrayLiteral("no picture in here"));
    open(m_folder.path(), 4);
    const BrowseStatusBar& status = m_window.browseStatusBar();
    QTest::keyClick(grid(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(status.currentMessage(), QStringLiteral("没有可恢复的删除文件"));

    QTest::keyClick(grid(), Qt::Key_D);
    ASSERT_TRUE(waitUntil([&] { return idle() && state().imageFiles().size() == 3; }));
    ASSERT_TRUE(QFile::remove(*state().deletedFilesHistory().constFirst().trashFileURL)); // the Trash emptied
    QTest::keyClick(grid(), Qt::Key_Z, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return idle(); }, 15000));
    EXPECT_TRUE(status.currentMessage().startsWith(QStringLiteral("无法恢复“IMG_000.jpg”"))) << status.currentMessage().toStdString();

    state().select(2); // the file that is no picture at all
    QTest::keyClick(grid(), Qt::Key_R);
    ASSERT_TRUE(waitUntil([&] { return idle(); }));
    const QString sign = m_window.mode(0).overlay().currentText();
    EXPECT_TRUE(sign.startsWith(QStringLiteral("无法旋转: "))) << sign.toStdString();
    EXPECT_FALSE(sign.contains(QStringLiteral("Failed"))) << sign.toStdString(); // exiv2's English, said in Chinese
}

TEST_F(CullingWindowTest, OpeningEveryToolPanelKeepsTheWindowOnTheScreen)
{
    const QRect screen = m_window.screen()->availableGeometry();
    m_window.resize(screen.width() * 3 / 4, screen.height() * 3 / 4);
    for (QDockWidget* dock : m_window.findChildren<QDockWidget*>())
        dock->show();
    QApplication::processEvents();
    waitUntil([] { return false; }, 100); // let the layout settle and the window fit itself
    EXPECT_LE(m_window.frameGeometry().height(), screen.height());
    EXPECT_LE(m_window.frameGeometry().width(), screen.width());
    EXPECT_TRUE(screen.contains(m_window.geometry()))
        << m_window.geometry().width() << "x" << m_window.geometry().height();
}

TEST_F(CullingWindowTest, AFolderOpensAgainAsItWasLeft)
{
    writePictures(12);
    TempFolder other;
    other.writePicture(QStringLiteral("x.jpg"));
    open(m_folder.path(), 12);
    m_window.switchMode(MainWindow::filmStripMode);
    state().select(9);
    m_window.resize(700, 450);
    open(other.path(), 1);
    m_window.switchMode(MainWindow::gridMode);
    m_window.resize(600, 400);

    open(m_folder.path(), 12);
    EXPECT_EQ(m_window.currentModeIndex(), int(MainWindow::filmStripMode));
    EXPECT_EQ(state().selectedImageFileName(), QStringLiteral("IMG_009.jpg"));
    EXPECT_EQ(m_window.size(), QSize(700, 450));

    m_window.close(); // and again in the next session
    MainWindow next;
    next.show();
    next.openFolder(m_folder.path());
    ASSERT_TRUE(waitUntil([&] { return next.state().imageFiles().size() == 12 && !next.state().isLoadingImages; }));
    EXPECT_EQ(next.state().selectedImageFileName(), QStringLiteral("IMG_009.jpg"));
    EXPECT_EQ(next.currentModeIndex(), int(MainWindow::filmStripMode));
}

TEST_F(CullingWindowTest, AJpegCutShortShowsWhatIsThereInsteadOfAnError)
{
    QImage whole(640, 480, QImage::Format_RGB32);
    whole.fill(Qt::darkYellow);
    ASSERT_TRUE(whole.save(m_folder.filePath(QStringLiteral("whole.jpg")), "JPEG", 90));
    const QByteArray bytes = m_folder.read(QStringLiteral("whole.jpg"));
    m_folder.write(QStringLiteral("whole.jpg"), bytes.left(bytes.size() / 2));
    open(m_folder.path(), 1);
    auto& preview = static_cast<GridPreviewMode&>(m_window.mode(0)).preview();
    EXPECT_TRUE(waitUntil([&] { return preview.isShowingPreview(); }));
    EXPECT_TRUE(waitUntil([&] { return !m_window.mode(0).thumbnails().tileImage(0).isNull(); }));
}

TEST_F(CullingWindowTest, TitleNamesTheAppOnceAndTheEmptyFolderLineIsReadable)
{
    TempFolder empty;
    m_window.openFolder(empty.path());
    ASSERT_TRUE(waitUntil([&] { return !state().isLoadingImages; }));
    const QString title = m_window.windowTitle();
    EXPECT_EQ(title.count(QStringLiteral("Lumaro")), 1) << title.toStdString();
    EXPECT_TRUE(title.endsWith(QStringLiteral("Lumaro"))) << title.toStdString(); // so the platform adds none
    EXPECT_TRUE(title.startsWith(QFileInfo(empty.path()).fileName()));

    const QImage shot = m_window.mode(0).thumbnails().viewport()->grab().toImage();
    const QColor background = shot.pixelColor(2, 2);
    EXPECT_LT(background.lightness(), 100) << background.name().toStdString(); // the light text is on dark
}

} // namespace
} // namespace lumaro::app
