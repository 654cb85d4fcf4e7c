// SPDX-License-Identifier: GPL-3.0-or-later
// The shooting report panel over a real folder (off the main thread, deletions of this session counted) and
// the histogram key over the preview.
#include "app/ReportPanel.h"
#include "app/BrowseMode.h"
#include "app/HistogramOverlay.h"
#include "app/MainWindow.h"
#include "app/ThumbnailScrollView.h"
#include "browse/hotkeys/HistogramHotkey.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "tests/app/FakeToolHost.h"
#include "tests/support/TempFolder.h"

#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QPushButton>
#include <QTest>
#include <QThreadPool>

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using testing::FakeToolHost;
using testing::TempFolder;
using testing::waitUntil;

TEST(ReportPanel, ReportsTheTreeAndCountsThisSessionsDeletions)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("IMG_1.jpg"), {60, 40});
    folder.writePicture(QStringLiteral("day2/IMG_2.jpg"), {40, 60});
    const QString deleted = folder.writePicture(QStringLiteral("IMG_3.jpg"));
    const QString restored = folder.writePicture(QStringLiteral("IMG_4.jpg"));
    FakeToolHost host;
    host.modeState().setFolderPath(folder.path(), folder.path(), folder.path());
    platform::MemorySettingsStore store;
    browse::HotkeyManager actions(store);
    browse::HistogramHotkey histogramKey(store, actions);
    ReportPanel panel(host, histogramKey);
    // Two pictures deleted from the window; one of them was put back since.
    for (const QString& path : {deleted, restored}) {
        browse::DeletedFileInfo info;
        info.fileName = QFileInfo(path).fileName();
        info.folderPath = folder.path();
        host.modeState().addDeletedFile(info);
    }
    ASSERT_TRUE(QFile::remove(deleted));

    panel.deepBox().setChecked(true);
    panel.runButton().click();
    EXPECT_TRUE(panel.isRunning());
    ASSERT_TRUE(waitUntil([&] { return !panel.isRunning() && panel.report().has_value(); }));
    const report::ShootingReport& report = *panel.report();
    EXPECT_EQ(report.exposures, 3);
    EXPECT_EQ(report.landscape, 2);
    EXPECT_EQ(report.portrait, 1);
    EXPECT_EQ(report.deletedThisSession, 1);
}

TEST(ReportPanel, ACancelledRunsLateResultIsDropped)
{
    TempFolder folder;
    for (int i = 0; i < 30; ++i)
        folder.writePicture(QStringLiteral("IMG_%1.jpg").arg(i));
    FakeToolHost host;
    host.modeState().setFolderPath(folder.path(), folder.path(), folder.path());
    platform::MemorySettingsStore store;
    browse::HotkeyManager actions(store);
    browse::HistogramHotkey histogramKey(store, actions);
    ReportPanel panel(host, histogramKey);
    int finished = 0;
    QObject::connect(&panel, &ReportPanel::finished, [&] { ++finished; });
    panel.run();
    panel.cancel();
    EXPECT_FALSE(panel.isRunning());
    // A second run after the cancel: only its result arrives; the cancelled one's is dropped on the way.
    panel.deepBox().setChecked(false);
    panel.run();
    ASSERT_TRUE(waitUntil([&] { return panel.report().has_value(); }));
    ASSERT_TRUE(waitUntil([&] { return QThreadPool::globalInstance()->activeThreadCount() == 0; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(panel.report()->exposures, 30);
}

TEST(HistogramOverlay, TheKeyShowsTheSelectedPicturesHistogramAndHidesIt)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("IMG_1.jpg"), {96, 64}, Qt::white);
    folder.writePicture(QStringLiteral("IMG_2.jpg"), {96, 64}, Qt::black);
    MainWindow window;
    window.resize(1000, 700);
    window.show();
    window.openFolder(folder.path());
    ASSERT_TRUE(waitUntil([&] { return window.state().imageFiles().size() == 2; }));
    QWidget* grid = &window.mode(window.currentModeIndex()).thumbnails();

    QTest::keyClick(grid, Qt::Key_H);
    HistogramOverlay& overlay = window.histogramOverlay();
    EXPECT_TRUE(overlay.isVisible());
    const QString first = QDir(folder.path()).filePath(QStringLiteral("IMG_1.jpg"));
    ASSERT_TRUE(waitUntil([&] { return overlay.shownPath() == first && !overlay.histogram().isEmpty(); }));
    EXPECT_GT(overlay.histogram().highlightPercent(), 90.0);

    QTest::keyClick(grid, Qt::Key_Right);
    const QString second = QDir(folder.path()).filePath(QStringLiteral("IMG_2.jpg"));
    ASSERT_TRUE(waitUntil([&] { return overlay.shownPath() == second; }));
    // Black with the white top-left quarter every generated test picture has.
    EXPECT_NEAR(overlay.histogram().shadowPercent(), 75.0, 3.0);
    EXPECT_NEAR(overlay.histogram().highlightPercent(), 25.0, 3.0);

    QTest::keyClick(grid, Qt::Key_H);
    EXPECT_FALSE(overlay.isVisible());
}

} // namespace
} // namespace lumaro::app
