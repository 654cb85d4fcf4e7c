// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/IndexFolder.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <unistd.h>

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

namespace {

struct BlockCase
{
    const char* name;
    bool indexFolderExists;
    QFile::Permissions permissions; // given after set-up to the folder named by `permissionsOf`, relative to
    const char* permissionsOf;      // the picture folder ("" for itself)
    bool blocked;
    const char* logged;
};

class IndexFolderBlocked : public ::testing::TestWithParam<BlockCase>
{
};

constexpr QFile::Permissions kReadOnly = QFile::ReadOwner | QFile::ExeOwner;
constexpr QFile::Permissions kWritable = kReadOnly | QFile::WriteOwner;

} // namespace

// A run asks before it reads a whole folder: a card or a share mounted read-only must fail at once, not after
// every picture was read.
TEST_P(IndexFolderBlocked, BeforeARunReadsAnything)
{
    const BlockCase& c = GetParam();
    if (c.permissions != kWritable && ::geteuid() == 0)
        GTEST_SKIP() << "root may write into a read-only folder";
    TempFolder folder;
    folder.writePicture(QStringLiteral("p.jpg"));
    if (c.indexFolderExists)
        ASSERT_TRUE(QDir().mkpath(folder.filePath(QStringLiteral("_index"))));
    const QString changed = folder.filePath(QString::fromLatin1(c.permissionsOf));
    QFile::setPermissions(changed, c.permissions);
    LogCapture log;
    const bool blocked = IndexFolder::isBlocked(folder.path(), QStringLiteral("WATERMARK"));
    QFile::setPermissions(changed, kWritable);
    EXPECT_EQ(blocked, c.blocked);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("WATERMARK - ") + QString::fromUtf8(c.logged)),
              *c.logged ? 1 : 0);
    EXPECT_EQ(QFileInfo(folder.filePath(QStringLiteral("_index"))).isDir(), c.indexFolderExists);
}

INSTANTIATE_TEST_SUITE_P(
    IndexFolder, IndexFolderBlocked,
    ::testing::Values(BlockCase{"writableFolder", false, kWritable, "", false, ""},
                      BlockCase{"writableIndexFolder", true, kWritable, "_index", false, ""},
                      BlockCase{"readOnlyFolder", false, kReadOnly, "", true, "文件夹不可写: "},
                      BlockCase{"readOnlyIndexFolder", true, kReadOnly, "_index", true,
                                "_index 目录不可写: "},
                      // The index folder may be written though the pictures' folder may not.
                      BlockCase{"writableIndexInReadOnlyFolder", true, kReadOnly, "", false, ""}),
    [](const ::testing::TestParamInfo<BlockCase>& info) { return std::string(info.param.name); });
