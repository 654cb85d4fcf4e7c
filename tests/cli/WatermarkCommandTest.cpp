// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"
#include "tests/vision/VisionIndexFixture.h"

#include <gtest/gtest.h>

using namespace lumaro::testing;

TEST(CliWatermark, BadUsageAndBadInputSayWhyAndChangeNothing)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("a.jpg"));
    const QString file = folder.write(QStringLiteral("notes.txt"));
    const QString log = folder.write(QStringLiteral("log.json"), "[1, 2]");
    struct Case
    {
        QStringList arguments;
        const char* says;
    };
    const Case cases[] = {
        {{folder.path(), QStringLiteral("--copy")}, "--copy and --dry-run go with --to DIR"},
        {{folder.path()}, "--all"}, // no vision index: how to make one, or read everything
        {{folder.path(), QStringLiteral("--to"), file, QStringLiteral("--all")}, "is a file, not a folder"},
        {{QStringLiteral("--undo"), log}, "not a watermark move log"},
        {{QStringLiteral("--undo"), folder.filePath(QStringLiteral("gone.json"))}, "gone.json"},
        {{QStringLiteral("--undo"), log, folder.path()}, "--undo takes the log file alone"},
        {{folder.filePath(QStringLiteral("missing"))}, "missing"},
    };
    const QStringList before = folder.entries();
    for (const Case& c : cases) {
        const CliResult result =
            runCli(QStringList{QStringLiteral("watermark"), QStringLiteral("--quiet")} + c.arguments);
        EXPECT_EQ(result.exitCode, 2) << c.arguments.join(' ').toStdString();
        EXPECT_TRUE(result.errText().contains(QString::fromUtf8(c.says))) << result.errText().toStdString();
    }
    EXPECT_EQ(folder.entries(), before);
}

TEST(CliWatermark, AFolderWithoutPeoplePicturesReadsNothingAndMovesNothing)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("cat.jpg"));
    writeVisionIndex(folder, QStringLiteral("vision_index_0501100000_x.json"),
                     QStringLiteral("2024-05-01T10:00:00Z"),
                     {{QStringLiteral("cat.jpg"), QStringLiteral("MARK_DIVERSE_TABBY")}});
    const CliResult result = runCli({QStringLiteral("watermark"), QStringLiteral("--quiet"), folder.path(),
                                     QStringLiteral("--to"), folder.path(), QStringLiteral("--json")});
    EXPECT_EQ(result.exitCode, 0) << result.errText().toStdString();
    EXPECT_TRUE(result.outText().contains(QStringLiteral("\"read\":0"))) << result.outText().toStdString();
    EXPECT_TRUE(folder.exists(QStringLiteral("cat.jpg")));
}
