// SPDX-License-Identifier: GPL-3.0-or-later
// The online album panel publishing the folder shown to real WebDAV and SFTP servers, off the main thread,
// and its accounts dialog against a real keyring.
#include "app/RollPanel.h"

#include "app/StorageAccountDialog.h"
#include "platform/AppPaths.h"
#include "platform/cloud/SecretStore.h"
#include "platform/files/FileNameCodec.h"
#include "tests/app/FakeToolHost.h"
#include "tests/rolls/PrivateKeyring.h"
#include "tests/rolls/RcloneServer.h"
#include "tests/support/TempFolder.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>

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

TEST(RollPanel, AnAccountAddedInTheDialogIsCheckedPublishedToAndRemovedWithItsPassword)
{
    if (!platform::Rclone::isInstalled())
        GTEST_SKIP() << "rclone is not installed";
    const testing::PrivateKeyring keyring;
    if (!keyring.whyNot().empty())
        GTEST_SKIP() << keyring.whyNot();
    TempFolder space;
    const QString password = QStringLiteral("right horse battery");
    testing::RcloneServer server(space.makeFolder(QStringLiteral("remote")), QStringLiteral("bo"), password,
                                 testing::RcloneServer::Protocol::sftp);
    ASSERT_TRUE(server.start());
    TempFolder shoot;
    shoot.writePicture(QStringLiteral("IMG_1.jpg"), {300, 200});
    FakeToolHost host;
    host.modeState().setFolderPath(shoot.path(), shoot.path(), shoot.path());
    // No rclone config of the user's: only the dialog's account exists.
    RollPanel panel(
        host, platform::Rclone({{QStringLiteral("RCLONE_CONFIG"), space.filePath(QStringLiteral("none"))}}));
    StorageAccountDialog& dialog = *panel.showAccounts();
    const auto settle = [&] { return waitUntil([&] { return !dialog.isBusy(); }, 30000); };

    dialog.name().setText(QStringLiteral("my nas"));
    dialog.addAccount();
    ASSERT_TRUE(settle());
    EXPECT_TRUE(dialog.status().text().contains(QStringLiteral("未保存")))
        << dialog.status().text().toStdString();
    EXPECT_EQ(dialog.accounts().count(), 0);

    dialog.name().setText(QStringLiteral("nas"));
    dialog.type().setCurrentIndex(dialog.type().findData(QStringLiteral("sftp")));
    ASSERT_TRUE(dialog.field(QStringLiteral("host")) && !dialog.field(QStringLiteral("url")));
    const QStringList hostAndPort = server.address().split(QLatin1Char(':'));
    dialog.field(QStringLiteral("host"))->setText(hostAndPort.at(0));
    dialog.field(QStringLiteral("port"))->setText(hostAndPort.at(1));
    dialog.field(QStringLiteral("user"))->setText(QStringLiteral("bo"));
    dialog.secret().setText(password);
    dialog.addAccount();
    ASSERT_TRUE(settle());
    ASSERT_EQ(dialog.accounts().count(), 1) << dialog.status().text().toStdString();
    EXPECT_TRUE(dialog.secret().text().isEmpty());
    EXPECT_GE(panel.destination().findText(QStringLiteral("nas:")), 0);
    EXPECT_FALSE(
        platform::FileNameCodec::readAll(platform::AppPaths::dataDir() + QStringLiteral("/accounts.json"))
            .contains(password.toUtf8()));

    dialog.accounts().setCurrentRow(0);
    dialog.checkSelected();
    ASSERT_TRUE(settle());
    EXPECT_TRUE(dialog.status().text().contains(QStringLiteral("可以连接")))
        << dialog.status().text().toStdString();

    panel.destination().setEditText(QStringLiteral("nas:albums"));
    panel.publish();
    ASSERT_TRUE(waitUntil([&] { return !panel.isRunning(); }, 60000));
    EXPECT_TRUE(panel.status().text().contains(QStringLiteral("已发布 1 张")))
        << panel.status().text().toStdString();

    dialog.removeSelected();
    auto* ask = dialog.findChild<QMessageBox*>();
    ASSERT_TRUE(ask);
    ask->button(QMessageBox::Yes)->click();
    ASSERT_TRUE(settle());
    EXPECT_EQ(dialog.accounts().count(), 0) << dialog.status().text().toStdString();
    EXPECT_FALSE(platform::SecretStore::lookup(QStringLiteral("rclone:nas")));
    EXPECT_LT(panel.destination().findText(QStringLiteral("nas:")), 0);
    dialog.close();
}

} // namespace
} // namespace lumaro::app
