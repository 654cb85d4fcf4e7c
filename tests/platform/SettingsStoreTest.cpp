// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AppPaths.h"
#include "platform/QSettingsStore.h"

#include "tests/support/TempFolder.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

TEST(QSettingsStore, ValuesSurviveReopeningTheFile)
{
    TempFolder folder;
    const QString file = folder.filePath(QStringLiteral("s.conf"));
    {
        QSettingsStore store(file);
        store.setBytes(QStringLiteral("LMR_FolderBookmarkData"), QByteArray("\x00\x01\xff", 3));
        store.setString(QStringLiteral("LMR_OriginalFolderPath"), QStringLiteral("/照片/My Trip #1"));
        store.setInteger(QStringLiteral("LMR_ImagesPerRow"), 7);
        store.setBoolean(QStringLiteral("LMR_HasRequestedPermissions"), true);
        store.setBoolean(QStringLiteral("off"), false);
        store.setString(QStringLiteral("gone"), QStringLiteral("x"));
        store.remove(QStringLiteral("gone"));
    }
    QSettingsStore reopened(file);
    EXPECT_EQ(reopened.bytes(QStringLiteral("LMR_FolderBookmarkData")), QByteArray("\x00\x01\xff", 3));
    EXPECT_EQ(reopened.string(QStringLiteral("LMR_OriginalFolderPath")), QStringLiteral("/照片/My Trip #1"));
    EXPECT_EQ(reopened.integer(QStringLiteral("LMR_ImagesPerRow")), 7);
    EXPECT_EQ(reopened.boolean(QStringLiteral("LMR_HasRequestedPermissions")), true);
    EXPECT_EQ(reopened.boolean(QStringLiteral("off")), false);
    EXPECT_FALSE(reopened.contains(QStringLiteral("gone")));
    EXPECT_EQ(reopened.integer(QStringLiteral("missing")), std::nullopt);
}

TEST(QSettingsStore, IntegerReadOfATextValueIsAbsentNotZero)
{
    TempFolder folder;
    QSettingsStore store(folder.filePath(QStringLiteral("s.conf")));
    store.setString(QStringLiteral("LMR_ImagesPerRow"), QStringLiteral("many"));
    EXPECT_EQ(store.integer(QStringLiteral("LMR_ImagesPerRow")), std::nullopt);
}

TEST(AppPaths, FollowTheXdgHomesOfTheProcess)
{
    EXPECT_EQ(AppPaths::configDir(), qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/lumaro"));
    EXPECT_EQ(AppPaths::dataDir(), qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/lumaro"));
    EXPECT_EQ(AppPaths::cacheDir(), qEnvironmentVariable("XDG_CACHE_HOME") + QStringLiteral("/lumaro"));
}

TEST(AppPaths, ModelsAreSearchedInTheEnvironmentFolderFirst)
{
    qputenv("LUMARO_MODELS_DIR", "/opt/models");
    const QStringList dirs = AppPaths::modelSearchDirs();
    qunsetenv("LUMARO_MODELS_DIR");
    ASSERT_GE(dirs.size(), 3);
    EXPECT_EQ(dirs.at(0), QStringLiteral("/opt/models"));
    EXPECT_EQ(dirs.at(1), AppPaths::dataDir() + QStringLiteral("/models"));
    EXPECT_TRUE(dirs.at(2).endsWith(QStringLiteral("share/lumaro/models")));
}

TEST(QSettingsStore, SharedStoreWritesUnderTheConfigHome)
{
    QSettingsStore::shared().setInteger(QStringLiteral("LMR_ImagesPerRow"), 4);
    QSettingsStore::shared().sync();
    EXPECT_TRUE(QFileInfo::exists(AppPaths::configDir() + QStringLiteral("/lumaro.conf")));
}
