// SPDX-License-Identifier: GPL-3.0-or-later
// Damaged and extreme pictures handed to every command that reads pictures: each is reported as a failed
// picture with exit 1, the rest of the run goes on, no process aborts and no file changes.
#include "tests/cli/CliRunner.h"
#include "tests/support/HostilePictures.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QImageReader>

#include <gtest/gtest.h>

using namespace lumaro::testing;

namespace {

struct HostileFolder
{
    TempFolder folder;
    QStringList names;
    QList<QByteArray> contents;

    HostileFolder()
    {
        add(QStringLiteral("IMG_0001.CR2"), selfReferencingCr2());
        add(QStringLiteral("strip.jpg"), jpegOfSize({40000, 8}));
        add(QStringLiteral("claims 65500x1.jpg"), jpegClaimingSize({65500, 1}));
        folder.writePicture(QStringLiteral("good.jpg"), {320, 240});
    }

    void add(const QString& name, const QByteArray& bytes)
    {
        folder.write(name, bytes);
        names << name;
        contents << bytes;
    }

    void expectUntouched() const
    {
        for (qsizetype i = 0; i < names.size(); ++i)
            EXPECT_EQ(folder.read(names[i]), contents[i]) << qPrintable(names[i]);
    }
};

TEST(HostileFiles, TheSelfReferencingCr2IsBuiltAsDescribed)
{
    const QByteArray cr2 = selfReferencingCr2();
    EXPECT_EQ(cr2.size(), 82);
    EXPECT_TRUE(cr2.startsWith(QByteArray("II*\0\x10\0\0\0CR\x02\0", 12)));
    EXPECT_EQ(cr2.right(4), QByteArray("\x10\0\0\0", 4)); // the next IFD is the first one again
}

TEST(HostileFiles, ThumbsReportsThemAsFailedAndWritesTheRest)
{
    HostileFolder pictures;
    TempFolder out;
    const CliResult result =
        runCli({QStringLiteral("thumbs"), QStringLiteral("--quiet"), pictures.folder.path(),
                QStringLiteral("--size"), QStringLiteral("256"), QStringLiteral("--out"), out.path(),
                QStringLiteral("--jobs"), QStringLiteral("2")});
    ASSERT_EQ(result.exitCode, 1) << result.errText().toStdString();
    EXPECT_TRUE(out.exists(QStringLiteral("good.jpg.jpg")));
    // The strip is a real picture: its thumbnail keeps a row rather than losing its short side.
    EXPECT_EQ(QImageReader(out.filePath(QStringLiteral("strip.jpg.jpg"))).size(), QSize(256, 1));
    EXPECT_FALSE(out.exists(QStringLiteral("IMG_0001.CR2.jpg")));
    pictures.expectUntouched();
}

TEST(HostileFiles, IndexLeavesOutWhatItCannotAnalyseAndWritesTheRest)
{
    HostileFolder pictures;
    const CliResult result = runCli(
        {QStringLiteral("index"), pictures.folder.path(), QStringLiteral("--jobs"), QStringLiteral("2")});
    ASSERT_EQ(result.exitCode, 1) << result.errText().toStdString();
    const QStringList lines = result.outText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3) << result.outText().toStdString();
    QFile indexFile(lines[0]);
    ASSERT_TRUE(indexFile.open(QIODevice::ReadOnly));
    const QByteArray index = indexFile.readAll();
    EXPECT_TRUE(index.contains("good.jpg"));
    EXPECT_TRUE(index.contains("strip.jpg"));
    EXPECT_TRUE(result.errText().contains(QStringLiteral("识别失败: IMG_0001.CR2")));
    pictures.expectUntouched();
}

TEST(HostileFiles, ListAndPoseGoOn)
{
    HostileFolder pictures;
    const CliResult list = runCli({QStringLiteral("list"), pictures.folder.path()});
    EXPECT_EQ(list.exitCode, 0) << list.errText().toStdString();
    for (const QString& name : pictures.names)
        EXPECT_TRUE(list.outText().contains(name)) << qPrintable(name);

    QStringList pose{QStringLiteral("pose")};
    for (const QString& name : pictures.names)
        pose << pictures.folder.filePath(name);
    const CliResult poses = runCli(pose);
    EXPECT_GE(poses.exitCode, 1) << poses.errText().toStdString(); // 1: pictures failed; 2: no model here
    EXPECT_LE(poses.exitCode, 2) << poses.errText().toStdString();
    pictures.expectUntouched();
}

} // namespace
