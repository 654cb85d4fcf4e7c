// SPDX-License-Identifier: GPL-3.0-or-later
// The online album panel publishing the folder shown to a real WebDAV server, off the main thread.
#include "app/RollPanel.h"
#include "tests/app/FakeToolHost.h"
#include "tests/rolls/RcloneServer.h"
#include "tests/support/TempFolder.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using testing::FakeToolHost;
using testing::TempFolder;
using testing::waitUntil;

TEST(RollPanel, PublishesTheFolderShownAndListsTheRoll)
{
    if (!platform::Rclone::isInstalled())
        GTEST_SKIP() << "rclone is not installed";
    TempFolder space;
    testing::RcloneServer server(space.makeFolder(QStringLiteral("remote")));
    ASSERT_TRUE(server.start());
    TempFolder shoot;
    shoot.writePicture(QStringLiteral("IMG_1.jpg"), {300, 200});
    shoot.writePicture(QStringLiteral("IMG_2.jpg"), {200, 300});
    FakeToolHost host;
    RollPanel panel(host, platform::Rclone(server.remote(QStringLiteral("dav"))));

    panel.publish();
    EXPECT_TRUE(panel.status().text().contains(QStringLiteral("请先打开一个文件夹")));

    host.modeState().setFolderPath(shoot.path(), shoot.path(), shoot.path());
    panel.destination().setEditText(QStringLiteral("/not/a/remote"));
    panel.publish();
    ASSERT_TRUE(waitUntil([&] { return !panel.isRunning(); }, 20000));
    EXPECT_TRUE(panel.status().text().contains(QStringLiteral("未发布")))
        << panel.status().text().toStdString();

    panel.destination().setEditText(QStringLiteral("dav:albums"));
    panel.publish();
    EXPECT_TRUE(panel.isRunning());
    ASSERT_TRUE(waitUntil([&] { return !panel.isRunning(); }, 60000));
    EXPECT_TRUE(panel.status().text().contains(QStringLiteral("已发布 2 张")))
        << panel.status().text().toStdString();
    const QString roll = QStringLiteral("remote/albums/") + QDir(shoot.path()).dirName();
    EXPECT_TRUE(space.exists(roll + QStringLiteral("/index.html")));
    EXPECT_EQ(space.entries(roll + QStringLiteral("/p")).size(), 2);
    ASSERT_GE(panel.rolls().count(), 1);
}

} // namespace
} // namespace lumaro::app
