// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileCopier.h"

#include "tests/support/TempFolder.h"
#include "tests/support/XdgTags.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

TEST(FileCopier, ATakenNameGetsTheNextFreeOneAndNothingIsOverwritten)
{
    TempFolder card;
    TempFolder roll;
    const QString source =
        card.write(QStringLiteral("DCIM/101CANON/IMG_0001.JPG"), QByteArrayLiteral("second shot"));
    roll.write(QStringLiteral("IMG_0001.JPG"), QByteArrayLiteral("first shot"));
    roll.write(QStringLiteral("IMG_0001_1.JPG"), QByteArrayLiteral("another"));

    const auto written =
        FileCopier::copyWithoutOverwriting(source, roll.path(), QStringLiteral("IMG_0001.JPG"));
    ASSERT_TRUE(written);
    EXPECT_EQ(QFileInfo(*written).fileName(), QStringLiteral("IMG_0001_2.JPG"));
    EXPECT_EQ(roll.read(QStringLiteral("IMG_0001.JPG")), QByteArrayLiteral("first shot"));
    EXPECT_EQ(roll.read(QStringLiteral("IMG_0001_1.JPG")), QByteArrayLiteral("another"));
    EXPECT_EQ(roll.read(QStringLiteral("IMG_0001_2.JPG")), QByteArrayLiteral("second shot"));
    EXPECT_EQ(roll.entries().size(), 3); // no temporary left behind
}

TEST(FileCopier, KeepsColourTagsAndTheModificationTime)
{
    TempFolder folder;
    const QString source = folder.write(QStringLiteral("a b/照片.CR2"), QByteArray(3 << 20, 'r'));
    if (!lumaro::testing::setXdgTags(source, "red,Keep"))
        GTEST_SKIP() << "this file system has no user extended attributes";
    QFile file(source);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const QDateTime shot = QDateTime::fromSecsSinceEpoch(1'600'000'000);
    ASSERT_TRUE(file.setFileTime(shot, QFileDevice::FileModificationTime));
    file.close();

    const auto copy = FileCopier::copyWithoutOverwriting(source, folder.makeFolder(QStringLiteral("out")),
                                                         QStringLiteral("照片.CR2"));
    ASSERT_TRUE(copy);
    EXPECT_EQ(lumaro::testing::xdgTags(*copy), QByteArrayLiteral("red,Keep"));
    EXPECT_EQ(QFileInfo(*copy).lastModified(), shot);
    EXPECT_EQ(QFileInfo(*copy).size(), 3 << 20);
}

TEST(FileCopier, ACopyAbandonedHalfWayLeavesNothingBehind)
{
    TempFolder folder;
    const QString source = folder.write(QStringLiteral("big.jpg"), QByteArray(4 << 20, 'x'));
    const QString out = folder.makeFolder(QStringLiteral("out"));
    CopyOptions failHalfWay;
    failHalfWay.progress = [](qint64 copied, qint64 total) { return copied < total / 2; };
    QString error;
    EXPECT_FALSE(
        FileCopier::copyWithoutOverwriting(source, out, QStringLiteral("big.jpg"), &error, failHalfWay));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_TRUE(folder.entries(QStringLiteral("out")).isEmpty());

    folder.write(QStringLiteral("out/big.jpg"), QByteArrayLiteral("old"));
    EXPECT_FALSE(FileCopier::copyReplacing(source, folder.filePath(QStringLiteral("out/big.jpg")), &error,
                                           failHalfWay));
    EXPECT_EQ(folder.read(QStringLiteral("out/big.jpg")), QByteArrayLiteral("old"));
    EXPECT_EQ(folder.entries(QStringLiteral("out")), QStringList{QStringLiteral("big.jpg")});
}

TEST(FileCopier, CopyReplacingReplacesWhole)
{
    TempFolder folder;
    const QString source = folder.write(QStringLiteral("new.cr2"), QByteArrayLiteral("new"));
    const QString target =
        folder.write(QStringLiteral("RAW_PICK/new.cr2"), QByteArrayLiteral("old and longer"));
    ASSERT_TRUE(FileCopier::copyReplacing(source, target));
    EXPECT_EQ(folder.read(QStringLiteral("RAW_PICK/new.cr2")), QByteArrayLiteral("new"));
}

TEST(FileCopier, RefusesWhatIsNotARegularFile)
{
    TempFolder folder;
    const QString out = folder.makeFolder(QStringLiteral("out"));
    QString error;
    EXPECT_FALSE(FileCopier::copyWithoutOverwriting(folder.makeFolder(QStringLiteral("dir.jpg")), out,
                                                    QStringLiteral("dir.jpg"), &error));
    EXPECT_FALSE(FileCopier::copyWithoutOverwriting(folder.filePath(QStringLiteral("missing.jpg")), out,
                                                    QStringLiteral("missing.jpg"), &error));
    // A pipe with no writer: opening it to read would wait for one forever.
    const QString pipe = folder.filePath(QStringLiteral("pipe.jpg"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0644), 0);
    EXPECT_FALSE(FileCopier::copyWithoutOverwriting(pipe, out, QStringLiteral("pipe.jpg"), &error));
    EXPECT_TRUE(folder.entries(QStringLiteral("out")).isEmpty());
}

TEST(FileCopier, ReadingTheNextFileAheadNeverWaits)
{
    TempFolder folder;
    const QString pipe = folder.filePath(QStringLiteral("pipe.jpg"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0644), 0);
    FileCopier::readAheadSoon(pipe); // a pipe with no writer: a blocking open would hang the batch here
    FileCopier::readAheadSoon(folder.filePath(QStringLiteral("missing.jpg")));

    const QByteArray bytes(3 << 20, 'x');
    const QString picture = folder.write(QStringLiteral("a.jpg"), bytes);
    FileCopier::readAheadSoon(picture);
    const auto copy = FileCopier::copyWithoutOverwriting(picture, folder.makeFolder(QStringLiteral("out")),
                                                         QStringLiteral("a.jpg"));
    ASSERT_TRUE(copy);
    QFile written(*copy);
    ASSERT_TRUE(written.open(QIODevice::ReadOnly));
    EXPECT_EQ(written.readAll(), bytes);
}

TEST(RenameWithoutReplacing, NeverReplacesAnExistingEntry)
{
    TempFolder folder;
    const QString from = folder.write(QStringLiteral("a.jpg"), QByteArrayLiteral("a"));
    const QString to = folder.write(QStringLiteral("b.jpg"), QByteArrayLiteral("b"));
    QString error;
    EXPECT_FALSE(renameWithoutReplacing(from, to, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(folder.read(QStringLiteral("b.jpg")), QByteArrayLiteral("b"));
    EXPECT_TRUE(renameWithoutReplacing(from, folder.filePath(QStringLiteral("c.jpg"))));
    EXPECT_EQ(folder.read(QStringLiteral("c.jpg")), QByteArrayLiteral("a"));
    EXPECT_FALSE(folder.exists(QStringLiteral("a.jpg")));
}
