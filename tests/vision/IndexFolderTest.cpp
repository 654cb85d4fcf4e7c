// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/IndexFolder.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace lumaro::vision;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

TEST(IndexFolder, IsCreatedOnceAndHiddenFromFileManagers)
{
    TempFolder folder;
    folder.write(QStringLiteral(".hidden"), QByteArrayLiteral("keep-me")); // no trailing newline
    LogCapture log;
    const auto path = IndexFolder::ensure(folder.path(), QStringLiteral("VISION_INDEX"));
    ASSERT_TRUE(path);
    EXPECT_TRUE(QFileInfo(*path).isDir());
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - 创建 _index 目录: ") + *path));
    EXPECT_EQ(folder.read(QStringLiteral(".hidden")), QByteArrayLiteral("keep-me\n_index\n"));

    ASSERT_TRUE(IndexFolder::ensure(folder.path(), QStringLiteral("VISION_INDEX")));
    EXPECT_TRUE(IndexFolder::hideInFileManagers(folder.path()));
    EXPECT_EQ(folder.read(QStringLiteral(".hidden")), QByteArrayLiteral("keep-me\n_index\n"));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("VISION_INDEX - 创建 _index 目录: ")), 1);
}

TEST(IndexFolder, APlainFileNamedIndexIsNeverReplaced)
{
    TempFolder folder;
    folder.write(QStringLiteral("_index"), QByteArrayLiteral("user data"));
    LogCapture log;
    EXPECT_FALSE(IndexFolder::ensure(folder.path(), QStringLiteral("VISION_INDEX")));
    EXPECT_TRUE(log.contains(QStringLiteral("VISION_INDEX - _index 路径存在但不是目录")));
    EXPECT_EQ(folder.read(QStringLiteral("_index")), QByteArrayLiteral("user data"));
    EXPECT_TRUE(IndexFolder::jsonFiles(folder.path(), QStringLiteral("vision_index_")).isEmpty());
}

TEST(IndexFolder, FindsJsonFilesByPrefixInNameOrder)
{
    TempFolder folder;
    folder.write(QStringLiteral("_index/vision_index_1122000000_a_1.json"));
    folder.write(QStringLiteral("_index/vision_index_0101000000_a_1.json"));
    folder.write(QStringLiteral("_index/vision_summary_0101000000_a_1.json"));
    folder.write(QStringLiteral("_index/vision_index_notes.txt"));
    const QStringList files = IndexFolder::jsonFiles(folder.path(), QStringLiteral("vision_index_"));
    ASSERT_EQ(files.size(), 2);
    EXPECT_TRUE(files.at(0).endsWith(QStringLiteral("vision_index_0101000000_a_1.json")));
    EXPECT_TRUE(files.at(1).endsWith(QStringLiteral("vision_index_1122000000_a_1.json")));
}
