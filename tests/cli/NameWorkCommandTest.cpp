// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"
#include "tests/vision/VisionIndexFixture.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace lumaro::testing;

namespace {

void writeIndexed(TempFolder& folder, const QStringList& names)
{
    std::vector<std::pair<QString, QString>> marks;
    for (const QString& name : names) {
        folder.write(name, name.toUtf8());
        marks.emplace_back(name, QStringLiteral("MARK_OUTDOOR"));
    }
    writeVisionIndex(folder, QStringLiteral("vision_index_0501100000_x.json"), QStringLiteral("2024-05-01T10:00:00Z"),
                     marks);
}

CliResult run(const QString& command, const QString& folder, const QStringList& options = {})
{
    return runCli(QStringList{command, QStringLiteral("--quiet")} + options + QStringList{folder});
}

} // namespace

TEST(CliGroup, PrintsEachRenameAndUngroupGivesBackTheNames)
{
    TempFolder folder;
    const QStringList names{QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg"), QStringLiteral("照片 1.png")};
    writeIndexed(folder, names);
    const CliResult grouped = run(QStringLiteral("group"), folder.path());
    EXPECT_EQ(grouped.exitCode, 0) << grouped.errText().toStdString();
    EXPECT_EQ(grouped.outText(), QStringLiteral("IMG_0001.jpg -> _G1_IMG_0001.jpg\nIMG_0002.jpg -> _G1_IMG_0002.jpg\n"
                                                "照片 1.png -> _G2_照片 1.png\n分组完成: 2 个组，3 个文件已重命名\n"));
    EXPECT_TRUE(folder.exists(QStringLiteral("_G2_照片 1.png")));

    const CliResult again = run(QStringLiteral("group"), folder.path());
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_EQ(again.outText(), QStringLiteral("所有文件已经处理过，或没有可处理的文件\n"));

    const CliResult ungrouped = run(QStringLiteral("ungroup"), folder.path());
    EXPECT_EQ(ungrouped.exitCode, 0) << ungrouped.errText().toStdString();
    EXPECT_TRUE(ungrouped.outText().endsWith(QStringLiteral("清理完成: 3 个文件已移除分类前缀\n")));
    EXPECT_EQ(visibleFileNames(folder), names);
}

TEST(CliGroup, DryRunPrintsThePlanAndRenamesNothing)
{
    TempFolder folder;
    writeIndexed(folder, {QStringLiteral("a1.jpg")});
    const CliResult result = run(QStringLiteral("group"), folder.path(), {QStringLiteral("--dry-run")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.outText(), QStringLiteral("a1.jpg -> _G1_a1.jpg\n预览: 1 个组，1 个文件将被重命名\n"));
    EXPECT_TRUE(folder.exists(QStringLiteral("a1.jpg")));
}

TEST(CliGroup, WithoutAVisionIndexExitsTwoAfterTheAdvice)
{
    TempFolder folder;
    folder.write(QStringLiteral("a1.jpg"));
    const CliResult result = runCli({QStringLiteral("group"), folder.path()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.isEmpty());
    EXPECT_TRUE(result.errText().contains(
        QStringLiteral("EDIT1_NAMEWORK - 建议: 请先为当前文件夹生成 Vision 索引，然后再进行文件名分组")));
    EXPECT_TRUE(result.errText().contains(QStringLiteral("no vision index")));
    EXPECT_TRUE(folder.exists(QStringLiteral("a1.jpg")));
}

TEST(CliGroup, ATakenNameIsLeftAloneAndExitsOne)
{
    TempFolder folder;
    writeIndexed(folder, {QStringLiteral("a1.jpg"), QStringLiteral("a2.jpg")});
    folder.write(QStringLiteral("_G1_a2.jpg"), "keep");
    const CliResult result = runCli({QStringLiteral("group"), folder.path()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.outText().contains(QStringLiteral("skipped: a2.jpg\n")));
    EXPECT_TRUE(result.errText().contains(QStringLiteral("文件已存在，跳过: _G1_a2.jpg")));
    EXPECT_EQ(folder.read(QStringLiteral("_G1_a2.jpg")), QByteArrayLiteral("keep"));
    EXPECT_EQ(folder.read(QStringLiteral("a2.jpg")), QByteArrayLiteral("a2.jpg"));
}

TEST(CliGroup, AReadOnlyFolderFailsEveryRenameLosesNothingAndExitsOne)
{
    if (runningAsRoot())
        GTEST_SKIP() << "root renames in read-only folders; the service test injects the failure instead";
    TempFolder folder;
    writeIndexed(folder, {QStringLiteral("a1.jpg"), QStringLiteral("a2.jpg")});
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
    const CliResult result = run(QStringLiteral("group"), folder.path());
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.outText().startsWith(QStringLiteral("部分文件重命名失败: ")));
    EXPECT_EQ(visibleFileNames(folder), (QStringList{QStringLiteral("a1.jpg"), QStringLiteral("a2.jpg")}));
}

struct BadFolder
{
    const char* command;
    const char* relative; // inside the temporary folder
    const char* message;
};

class CliNameWorkBadFolder : public ::testing::TestWithParam<BadFolder>
{
};

TEST_P(CliNameWorkBadFolder, ExitsTwoWithAClearMessage)
{
    TempFolder folder;
    folder.write(QStringLiteral("file.jpg"));
    const CliResult result =
        run(QLatin1String(GetParam().command), folder.filePath(QLatin1String(GetParam().relative)));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.out.isEmpty());
    EXPECT_TRUE(result.errText().contains(QLatin1String(GetParam().message))) << result.errText().toStdString();
}

INSTANTIATE_TEST_SUITE_P(Cases, CliNameWorkBadFolder,
                         ::testing::Values(BadFolder{"group", "missing", "no such folder"},
                                           BadFolder{"ungroup", "missing", "no such folder"},
                                           BadFolder{"group", "file.jpg", "is a file, not a folder"},
                                           BadFolder{"ungroup", "file.jpg", "is a file, not a folder"}));
