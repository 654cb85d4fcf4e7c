// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace lumaro::testing;

TEST(CliBoard, BadUsageAndBadInputSayWhyAndWriteNothing)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("a.jpg"));
    TempFolder empty;
    TempFolder blocked;
    blocked.writePicture(QStringLiteral("a.jpg"));
    blocked.write(QStringLiteral("_index"), "mine");
    struct Case
    {
        QStringList arguments;
        const char* says;
    };
    const Case cases[] = {
        {{folder.path(), QStringLiteral("--columns"), QStringLiteral("1")},
         "--columns takes a number from 2 to 10"},
        {{folder.path(), QStringLiteral("--columns"), QStringLiteral("five")}, "--columns"},
        {{folder.path(), QStringLiteral("--paper"), QStringLiteral("a3")}, "--paper is a4 or letter"},
        {{empty.path()}, "holds no pictures"},
        {{blocked.path()}, "_index"},
        {{folder.filePath(QStringLiteral("missing"))}, "missing"},
    };
    for (const Case& c : cases) {
        const CliResult result =
            runCli(QStringList{QStringLiteral("board"), QStringLiteral("--quiet")} + c.arguments);
        EXPECT_EQ(result.exitCode, 2) << c.arguments.join(' ').toStdString();
        EXPECT_TRUE(result.errText().contains(QString::fromUtf8(c.says))) << result.errText().toStdString();
    }
    EXPECT_EQ(folder.entries(), QStringList{QStringLiteral("a.jpg")});
    EXPECT_EQ(blocked.read(QStringLiteral("_index")), "mine");
}

TEST(CliBoard, WritesPagesAndAPdfIntoTheIndexFolder)
{
    TempFolder folder;
    for (const char* name : {"a.jpg", "b.png", "c.jpg"})
        folder.writePicture(QString::fromLatin1(name));
    const CliResult result =
        runCli({QStringLiteral("board"), folder.path(), QStringLiteral("--pdf"), QStringLiteral("--paper"),
                QStringLiteral("letter"), QStringLiteral("--quiet")});
    EXPECT_EQ(result.exitCode, 0) << result.errText().toStdString();
    EXPECT_TRUE(result.outText().contains(QStringLiteral("3 pictures on 1 page\n")));
    const QStringList written = QDir(folder.filePath(QStringLiteral("_index"))).entryList(QDir::Files);
    EXPECT_EQ(written.filter(QStringLiteral("_p01.jpg")).size(), 1);
    EXPECT_EQ(written.filter(QStringLiteral(".pdf")).size(), 1);
}
