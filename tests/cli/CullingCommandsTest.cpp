// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"
#include "tests/support/XdgTags.h"

#include "platform/ExifOrientation.h"
#include "platform/files/FileNameCodec.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <gtest/gtest.h>

#include <cstdio>
#include <unistd.h>

using namespace lumaro::testing;

TEST(CliTrash, MovesEachFileAndPrintsWhereItWent)
{
    TempFolder folder;
    const QString a = folder.write(QStringLiteral("a b.jpg"), QByteArrayLiteral("a"));
    const QString b = folder.write(QStringLiteral("照片.CR2"), QByteArrayLiteral("b"));
    const CliResult result = runCli({QStringLiteral("trash"), QStringLiteral("--quiet"), a, b});
    EXPECT_EQ(result.exitCode, 0) << result.errText().toStdString();
    const QStringList lines = result.outText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines.at(0).startsWith(a + QStringLiteral(" -> ")));
    const QString where = lines.at(1).section(QStringLiteral(" -> "), 1);
    EXPECT_TRUE(where.endsWith(QStringLiteral("/Trash/files/照片.CR2"))) << where.toStdString();
    EXPECT_TRUE(QFileInfo::exists(where));
    EXPECT_TRUE(folder.entries().isEmpty());
}

TEST(CliTrash, AMissingFileAmongOthersFailsThatFileOnly)
{
    TempFolder folder;
    const QString a = folder.write(QStringLiteral("a.jpg"));
    const CliResult partial = runCli({QStringLiteral("trash"), QStringLiteral("-q"), a, folder.filePath("gone.jpg")});
    EXPECT_EQ(partial.exitCode, 1);
    EXPECT_TRUE(partial.errText().contains(QStringLiteral("gone.jpg")));
    EXPECT_FALSE(QFileInfo::exists(a));

    const CliResult none = runCli({QStringLiteral("trash"), QStringLiteral("-q"), folder.filePath("gone.jpg")});
    EXPECT_EQ(none.exitCode, 2);
    EXPECT_EQ(runCli({QStringLiteral("trash")}).exitCode, 2);
}

TEST(CliTags, TogglesAColourAndPrintsTheTags)
{
    TempFolder folder;
    const QString a = folder.write(QStringLiteral("a.jpg"));
    const CliResult on = runCli({QStringLiteral("tags"), QStringLiteral("-q"), a, QStringLiteral("--toggle"), "red"});
    EXPECT_EQ(on.exitCode, 0) << on.errText().toStdString();
    EXPECT_EQ(on.outText(), QStringLiteral("red\n"));
    runCli({QStringLiteral("tags"), QStringLiteral("-q"), a, QStringLiteral("--toggle"), "blue"});
    EXPECT_EQ(runCli({QStringLiteral("tags"), QStringLiteral("-q"), a}).outText(), QStringLiteral("red,blue\n"));
    EXPECT_EQ(runCli({QStringLiteral("tags"), "-q", "--json", a, "--toggle", "red"}).outText(),
              QStringLiteral("[\"blue\"]\n"));
}

TEST(CliTags, BadColourOrMissingFileIsBadInput)
{
    TempFolder folder;
    const QString a = folder.write(QStringLiteral("a.jpg"));
    const CliResult colour = runCli({QStringLiteral("tags"), QStringLiteral("-q"), a, "--toggle", "magenta"});
    EXPECT_EQ(colour.exitCode, 2);
    EXPECT_TRUE(colour.errText().contains(QStringLiteral("magenta")));
    EXPECT_EQ(runCli({QStringLiteral("tags"), QStringLiteral("-q"), folder.filePath("gone.jpg")}).exitCode, 2);
}

// lumaro-cli reads a picture's tags itself, without Qt; lumaro-cli-light through XattrTagStore. Both must print
// the same bytes for values other programs write: spaces of every kind, repeats, bytes that are not UTF-8,
// controls and backslashes.
class CliTagsFrontEnd : public ::testing::TestWithParam<QByteArray>
{
};

TEST_P(CliTagsFrontEnd, PrintsWhatTheLightProgramPrints)
{
    TempFolder folder;
    const QString picture = folder.write(QStringLiteral("with space 图.jpg"));
    if (!setXdgTags(picture, GetParam()))
        GTEST_SKIP() << "no user extended attributes on this file system";
    for (const QStringList& options : {QStringList{}, QStringList{QStringLiteral("-q")}}) {
        const QStringList arguments = QStringList{QStringLiteral("tags")} + options + QStringList{picture};
        SCOPED_TRACE(GetParam().toHex().toStdString());
        const CliResult front = runFrontAndLight(arguments);
        EXPECT_EQ(front.exitCode, 0) << front.errText().toStdString();
    }
}

// With --json, tags in UTF-8 are printed by lumaro-cli itself: a lone copy of it, with no helper to hand over
// to, prints what lumaro-cli-light prints.
TEST(CliTagsFrontEnd, JsonOfUtf8TagsIsAnsweredAlone)
{
    TempFolder folder;
    const QString picture = folder.write(QStringLiteral("with space 图.jpg"));
    if (!setXdgTags(picture, QByteArrayLiteral(" Portfolio , red,客户 \"A\",back\\slash")))
        GTEST_SKIP() << "no user extended attributes on this file system";
    TempFolder bin;
    const QString lone = bin.filePath(QStringLiteral("lumaro-cli"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(LUMARO_CLI_PATH), lone));
    const QStringList arguments{QStringLiteral("tags"), QStringLiteral("--json"), picture};
    const CliResult light = runProgram(QStringLiteral(LUMARO_CLI_LIGHT_PATH), arguments);
    const CliResult alone = runProgram(lone, arguments);
    EXPECT_EQ(alone.exitCode, 0) << alone.errText().toStdString();
    EXPECT_EQ(alone.out, light.out);
    EXPECT_EQ(alone.outText(), QStringLiteral("[\"Portfolio\",\"red\",\"客户 \\\"A\\\"\",\"back\\\\slash\"]\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Values, CliTagsFrontEnd,
    ::testing::Values(QByteArray(), QByteArrayLiteral("red"), QByteArrayLiteral(" Portfolio , red,,client A ,red"),
                      QByteArrayLiteral("\xe3\x80\x80\xe5\xae\xa2\xe6\x88\xb7\xc2\xa0,\xe2\x80\x83"
                                        "blue\t"),
                      QByteArrayLiteral("f\xf6\xff,red, \xe6\x97"), QByteArrayLiteral("two\nlines,back\\slash,\x7f"),
                      QByteArrayLiteral(" , ,")));

TEST(CliRotate, TurnsPicturesAndSaysWhatItCannotTurn)
{
    TempFolder folder;
    const QString png = folder.writePicture(QStringLiteral("a.png"));
    const CliResult ok = runCli({QStringLiteral("rotate"), QStringLiteral("-q"), png});
    EXPECT_EQ(ok.exitCode, 0) << ok.errText().toStdString();
    EXPECT_EQ(QImageReader(png).size(), QSize(48, 64));

    const QString heic = folder.write(QStringLiteral("b.heic"), QByteArrayLiteral("heic"));
    const CliResult display = runCli({QStringLiteral("rotate"), QStringLiteral("-q"), heic});
    EXPECT_EQ(display.exitCode, 1);
    EXPECT_EQ(folder.read(QStringLiteral("b.heic")), QByteArrayLiteral("heic"));

    EXPECT_EQ(runCli({QStringLiteral("rotate"), QStringLiteral("-q"), folder.write("notes.txt")}).exitCode, 2);
    EXPECT_EQ(runCli({QStringLiteral("rotate"), QStringLiteral("-q"), folder.filePath("gone.jpg")}).exitCode, 2);
}

TEST(CliTrash, RestorePutsBackAndNeverReplaces)
{
    TempFolder folder;
    const QString a = folder.write(QStringLiteral("a #1.jpg"), QByteArrayLiteral("first"));
    ASSERT_EQ(runCli({QStringLiteral("trash"), QStringLiteral("-q"), a}).exitCode, 0);
    const CliResult back = runCli({QStringLiteral("trash"), QStringLiteral("-q"), QStringLiteral("--restore"), a});
    EXPECT_EQ(back.exitCode, 0) << back.errText().toStdString();
    EXPECT_EQ(folder.read(QStringLiteral("a #1.jpg")), QByteArrayLiteral("first"));

    ASSERT_EQ(runCli({QStringLiteral("trash"), QStringLiteral("-q"), a}).exitCode, 0);
    folder.write(QStringLiteral("a #1.jpg"), QByteArrayLiteral("newcomer"));
    EXPECT_EQ(runCli({QStringLiteral("trash"), QStringLiteral("-q"), QStringLiteral("--restore"), a}).exitCode, 1);
    EXPECT_EQ(folder.read(QStringLiteral("a #1.jpg")), QByteArrayLiteral("newcomer"));
}

TEST(CliCulling, ANameThatIsNotUtf8KeepsItsBytesThroughEveryCommand)
{
    TempFolder folder;
    const QString utf8Name = folder.writePicture(QStringLiteral("tmp.jpg"));
    const QByteArray raw("caf\xe9 \xb0.jpg");
    const QByteArray rawPath = QFile::encodeName(folder.path()) + '/' + raw;
    ASSERT_EQ(::rename(QFile::encodeName(utf8Name).constData(), rawPath.constData()), 0);
    const QString path = lumaro::platform::FileNameCodec::decode(rawPath);
    const auto onDisk = [&] { return ::access(rawPath.constData(), F_OK) == 0; };

    EXPECT_EQ(runCli({QStringLiteral("list"), QStringLiteral("-q"), QStringLiteral("-0"), folder.path()}).out,
              raw + QByteArray(1, '\0'));
    EXPECT_EQ(runCli({QStringLiteral("list"), QStringLiteral("-q"), folder.path()}).outText(),
              QStringLiteral("caf\\xe9 \\xb0.jpg\n"));

    const CliResult tagged = runCli({QStringLiteral("tags"), QStringLiteral("-q"), QStringLiteral("--toggle"),
                                     QStringLiteral("red"), path});
    EXPECT_EQ(tagged.exitCode, 0) << tagged.errText().toStdString();
    EXPECT_EQ(tagged.outText().trimmed(), QStringLiteral("red"));
    const CliResult turned = runCli({QStringLiteral("rotate"), QStringLiteral("-q"), path});
    EXPECT_EQ(turned.exitCode, 0) << turned.errText().toStdString();
    EXPECT_EQ(lumaro::platform::ExifOrientation::read(path), 8);
    const CliResult marked =
        runCli({QStringLiteral("fav"), QStringLiteral("-q"), QStringLiteral("add"), path});
    EXPECT_EQ(marked.exitCode, 0) << marked.errText().toStdString();
    EXPECT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("-q"), QStringLiteral("audit")}).outText(),
              QStringLiteral("records without a path: 0\n")); // the favourite's file is found: not "missing"

    const CliResult trashed = runCli({QStringLiteral("trash"), QStringLiteral("-q"), path});
    EXPECT_EQ(trashed.exitCode, 0) << trashed.errText().toStdString();
    EXPECT_FALSE(onDisk());
    const CliResult back =
        runCli({QStringLiteral("trash"), QStringLiteral("-q"), QStringLiteral("--restore"), path});
    EXPECT_EQ(back.exitCode, 0) << back.errText().toStdString();
    EXPECT_TRUE(onDisk());
}
