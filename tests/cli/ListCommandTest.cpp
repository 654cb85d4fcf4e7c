// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include <QFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

using namespace lumaro::testing;

TEST(CliList, PrintsThePicturesInBrowsingOrder)
{
    TempFolder folder;
    for (const char* name : {"b.jpg", "B.jpg", "IMG_9.JPG", "IMG_10.jpg", "notes.txt", ".x.jpg", "照片 1.heic"})
        folder.write(QString::fromUtf8(name));
    const CliResult result = runCli({QStringLiteral("list"), QStringLiteral("--quiet"), folder.path()});
    EXPECT_EQ(result.exitCode, 0) << result.errText().toStdString();
    EXPECT_EQ(result.outText(), QStringLiteral("B.jpg\nIMG_10.jpg\nIMG_9.JPG\nb.jpg\n照片 1.heic\n"));
    EXPECT_TRUE(result.err.isEmpty());
}

TEST(CliList, LogLinesGoToStandardErrorUnlessQuiet)
{
    TempFolder folder;
    folder.write(QStringLiteral("a.jpg"));
    const CliResult result = runCli({QStringLiteral("list"), folder.path()});
    EXPECT_EQ(result.outText(), QStringLiteral("a.jpg\n"));
    EXPECT_TRUE(result.errText().contains(QStringLiteral("FileSystemService - 过滤后找到 1 个图像文件")));
}

TEST(CliList, ANewlineInANameStaysOnOneLineOrIsExactWithNul)
{
    TempFolder folder;
    folder.write(QStringLiteral("two\nlines.jpg"));
    EXPECT_EQ(runCli({QStringLiteral("list"), QStringLiteral("-q"), folder.path()}).outText(),
              QStringLiteral("two\\nlines.jpg\n"));
    EXPECT_EQ(runCli({QStringLiteral("list"), QStringLiteral("-q"), QStringLiteral("-0"), folder.path()}).out,
              QByteArray("two\nlines.jpg\0", 14));
    EXPECT_EQ(runCli({QStringLiteral("list"), QStringLiteral("-q"), QStringLiteral("--json"), folder.path()}).outText(),
              QStringLiteral("[\"two\\nlines.jpg\"]\n"));
}

struct BadInput
{
    const char* what;
    std::function<QStringList(TempFolder&)> arguments;
    const char* message;
};

class CliListBadInput : public ::testing::TestWithParam<BadInput>
{
};

TEST_P(CliListBadInput, ExitsTwoWithAClearMessage)
{
    TempFolder folder;
    const CliResult result = runCli(GetParam().arguments(folder));
    EXPECT_EQ(result.exitCode, 2) << GetParam().what;
    EXPECT_TRUE(result.out.isEmpty());
    EXPECT_TRUE(result.errText().contains(QString::fromUtf8(GetParam().message))) << result.errText().toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CliListBadInput,
    ::testing::Values(
        BadInput{"missing folder", [](TempFolder& f) { return QStringList{QStringLiteral("list"), f.filePath(QStringLiteral("nope"))}; },
                 "no such folder"},
        BadInput{"a file", [](TempFolder& f) { return QStringList{QStringLiteral("list"), f.write(QStringLiteral("a.jpg"))}; },
                 "is a file, not a folder"},
        BadInput{"no folder", [](TempFolder&) { return QStringList{QStringLiteral("list")}; }, "missing arguments"},
        BadInput{"unknown option", [](TempFolder& f) { return QStringList{QStringLiteral("list"), QStringLiteral("--frobnicate"), f.path()}; },
                 "Unknown option"},
        BadInput{"unknown command", [](TempFolder&) { return QStringList{QStringLiteral("frobnicate")}; }, "unknown command"}));

TEST(CliList, AnUnreadableFolderExitsTwo)
{
    if (runningAsRoot())
        GTEST_SKIP() << "root reads every folder; permissions cannot be tested as root";
    TempFolder folder;
    const QString locked = folder.makeFolder(QStringLiteral("locked"));
    QFile::setPermissions(locked, QFileDevice::WriteOwner);
    const CliResult result = runCli({QStringLiteral("list"), locked});
    QFile::setPermissions(locked, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("permission denied")));
}

TEST(Cli, HelpExitsZeroAndNamesTheCommands)
{
    const CliResult overview = runCli({QStringLiteral("--help")});
    EXPECT_EQ(overview.exitCode, 0);
    EXPECT_TRUE(overview.outText().contains(QStringLiteral("list")));
    const CliResult listHelp = runCli({QStringLiteral("list"), QStringLiteral("--help")});
    EXPECT_EQ(listHelp.exitCode, 0);
    EXPECT_TRUE(listHelp.outText().contains(QStringLiteral("Usage: lumaro-cli list")));
    EXPECT_EQ(runCli({}).exitCode, 2);
}

// lumaro-cli lists a plain folder itself, without Qt; lumaro-cli-light lists it through FileSystemService.
// Both must print the same bytes for names that are hard to print: raw bytes, controls, links, hidden
// entries.
class CliListFrontEnd : public ::testing::TestWithParam<QStringList>
{
};

TEST_P(CliListFrontEnd, PrintsWhatTheLightProgramPrints)
{
    TempFolder folder;
    const QByteArray root = QFile::encodeName(folder.path()) + '/';
    for (const QByteArray& name :
         {QByteArray("b.jpg"), QByteArray("B.JPEG"), QByteArray("IMG_10.jpg"), QByteArray("IMG_9.Cr2"),
          QByteArray("back\\slash.jpg"), QByteArray("tab\tand\nnewline.png"),
          QByteArray("ctl\x01 del\x7f.gif"), QByteArray("c1 \xc2\x85.webp"),
          QByteArray("\xf0\x9f\x93\xb7.heic"), QByteArray("caf\xe9.jpg"), QByteArray("over\xc0\xaflong.tif"),
          QByteArray("half\xed\xa0\x80.tiff"), QByteArray("cut\xe6\x97.bmp"), QByteArray("hidden.jpg"),
          QByteArray(".dot.jpg"), QByteArray("notes.txt"), QByteArray("noext")}) {
        const int fd = ::open(QByteArray(root + name).constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
        ASSERT_GE(fd, 0) << name.toStdString();
        ::close(fd);
    }
    folder.write(QStringLiteral(".hidden"), QByteArrayLiteral("hidden.jpg\r\n"));
    folder.makeFolder(QStringLiteral("folder.jpg"));
    ASSERT_EQ(::symlink("b.jpg", QByteArray(root + "link.jpg").constData()), 0);
    ASSERT_EQ(::symlink("gone.jpg", QByteArray(root + "dangling.jpg").constData()), 0);

    const QStringList arguments =
        QStringList{QStringLiteral("list")} + GetParam() + QStringList{folder.path()};
    const CliResult front = runFrontAndLight(arguments);
    EXPECT_EQ(front.exitCode, 0) << front.errText().toStdString();
    EXPECT_TRUE(front.out.contains("IMG_10.jpg")) << front.out.toStdString();
    EXPECT_FALSE(front.out.contains("hidden.jpg"));
}

INSTANTIATE_TEST_SUITE_P(Options, CliListFrontEnd,
                         ::testing::Values(QStringList{}, QStringList{QStringLiteral("-q")},
                                           QStringList{QStringLiteral("-q"), QStringLiteral("-0")},
                                           QStringList{QStringLiteral("--null"), QStringLiteral("--quiet")},
                                           QStringList{QStringLiteral("--json"), QStringLiteral("-q")}));

TEST(Cli, TheOverviewIsTheSameFromEveryProgram)
{
    const CliResult front = runCli({QStringLiteral("--help")});
    EXPECT_EQ(front.out, runProgram(QStringLiteral(LUMARO_CLI_LIGHT_PATH), {QStringLiteral("--help")}).out);
    EXPECT_TRUE(front.outText().contains(QStringLiteral("  histogram The tone histogram")));
    EXPECT_TRUE(front.outText().endsWith(QStringLiteral("2 bad usage or bad input.\n")));
}

// With --json, names in UTF-8 (controls, quotes, backslashes, emoji included) are listed by lumaro-cli
// itself: a lone copy of it, with no helper to hand over to, prints what lumaro-cli-light prints.
TEST(CliListFrontEnd, JsonOfUtf8NamesIsAnsweredAlone)
{
    TempFolder folder;
    for (const char* name : {"b.jpg", "tab\tand\nnewline.png", "q\"uote back\\slash.jpg", "ctl\x01.gif",
                             "\xf0\x9f\x93\xb7 收藏.heic", "IMG_10.jpg", "IMG_9.Cr2"})
        folder.write(QString::fromUtf8(name));
    TempFolder bin;
    const QString lone = bin.filePath(QStringLiteral("lumaro-cli"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(LUMARO_CLI_PATH), lone));
    for (const QStringList& options : {QStringList{QStringLiteral("--json")},
                                       QStringList{QStringLiteral("-q"), QStringLiteral("--json")}}) {
        const QStringList arguments =
            QStringList{QStringLiteral("list")} + options + QStringList{folder.path()};
        const CliResult light = runProgram(QStringLiteral(LUMARO_CLI_LIGHT_PATH), arguments);
        const CliResult alone = runProgram(lone, arguments);
        EXPECT_EQ(alone.exitCode, 0) << alone.errText().toStdString();
        EXPECT_EQ(alone.out, light.out);
        EXPECT_EQ(alone.err, light.err);
        EXPECT_TRUE(alone.out.contains("\"tab\\tand\\nnewline.png\"")) << alone.out.toStdString();
    }
}
