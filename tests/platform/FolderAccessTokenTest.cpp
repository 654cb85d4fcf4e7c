// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FolderAccessToken.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

TEST(FolderAccessToken, ResolvesToTheSameFolderWhileItStaysPut)
{
    TempFolder root;
    const QString folder = root.makeFolder(QStringLiteral("照片 #1"));
    const auto token = FolderAccessToken::create(folder);
    ASSERT_TRUE(token);
    const auto resolved = FolderAccessToken::resolve(*token);
    ASSERT_TRUE(resolved);
    EXPECT_EQ(resolved->path, folder);
    EXPECT_FALSE(resolved->isStale);
    EXPECT_TRUE(FolderAccessToken::startAccess(resolved->path));
}

TEST(FolderAccessToken, IsStaleWhenTheFolderWasReplacedOrRemoved)
{
    TempFolder root;
    const QString folder = root.makeFolder(QStringLiteral("shoot"));
    const auto token = FolderAccessToken::create(folder);
    ASSERT_TRUE(token);
    // Moved away and another folder put in its place: the path resolves, but to a different folder.
    ASSERT_TRUE(QDir().rename(folder, root.filePath(QStringLiteral("moved"))));
    root.makeFolder(QStringLiteral("shoot"));
    const auto replaced = FolderAccessToken::resolve(*token);
    ASSERT_TRUE(replaced);
    EXPECT_TRUE(replaced->isStale);

    ASSERT_TRUE(QDir(folder).removeRecursively());
    const auto removed = FolderAccessToken::resolve(*token);
    ASSERT_TRUE(removed);
    EXPECT_TRUE(removed->isStale);
    EXPECT_FALSE(FolderAccessToken::startAccess(folder));
}

TEST(FolderAccessToken, RefusesFilesMissingFoldersAndGarbage)
{
    TempFolder root;
    const QString file = root.write(QStringLiteral("a.jpg"));
    QString error;
    EXPECT_FALSE(FolderAccessToken::create(file, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(FolderAccessToken::create(root.filePath(QStringLiteral("nope"))));
    EXPECT_FALSE(FolderAccessToken::resolve(QByteArrayLiteral("not a token")));
    EXPECT_FALSE(FolderAccessToken::resolve(QByteArrayLiteral("{\"path\":\"\"}")));
    EXPECT_FALSE(FolderAccessToken::startAccess(file));
}
