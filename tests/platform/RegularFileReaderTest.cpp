// SPDX-License-Identifier: GPL-3.0-or-later
// A file someone else put there is read only when it is a plain file under the cap, and never hangs or
// exhausts memory (a FIFO, a link to /dev/zero, a huge file).
#include "platform/RegularFileReader.h"

#include "tests/support/TempFolder.h"

#include <QFile>

#include <gtest/gtest.h>
#include <sys/stat.h>

using lumaro::platform::RegularFileReader;
using lumaro::testing::TempFolder;

namespace {

TEST(RegularFileReader, ReadsAPlainFileAndAPlainFileThroughALink)
{
    TempFolder folder;
    folder.write(QStringLiteral("a.json"), QByteArrayLiteral("{\"x\":1}"));
    ASSERT_TRUE(
        QFile::link(folder.filePath(QStringLiteral("a.json")), folder.filePath(QStringLiteral("link.json"))));
    EXPECT_EQ(RegularFileReader::read(folder.filePath(QStringLiteral("a.json")), 100),
              QByteArrayLiteral("{\"x\":1}"));
    EXPECT_EQ(RegularFileReader::read(folder.filePath(QStringLiteral("link.json")), 100),
              QByteArrayLiteral("{\"x\":1}"));
}

TEST(RegularFileReader, RefusesDevicesFifosAndFilesAboveTheCap)
{
    TempFolder folder;
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), folder.filePath(QStringLiteral("zero.json"))));
    ASSERT_EQ(::mkfifo(QFile::encodeName(folder.filePath(QStringLiteral("fifo.json"))).constData(), 0600), 0);
    folder.write(QStringLiteral("big.json"), QByteArray(101, 'x'));
    for (const char* name : {"zero.json", "fifo.json", "big.json", "missing.json"}) {
        QString error;
        EXPECT_FALSE(RegularFileReader::read(folder.filePath(QString::fromLatin1(name)), 100, &error))
            << name;
        EXPECT_FALSE(error.isEmpty()) << name;
    }
    EXPECT_TRUE(RegularFileReader::read(folder.filePath(QStringLiteral("big.json")), 101));
}

} // namespace
