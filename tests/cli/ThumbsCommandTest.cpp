// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli thumbs as a user runs it: one JPEG per picture at the size asked, bad pictures counted, nothing in
// the output folder overwritten unless it is an earlier thumbnail of ours, bad usage refused.
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <cstdio>
#include <utility>

#include <gtest/gtest.h>

using namespace lumaro::testing;

namespace {

QStringList thumbsArguments(const TempFolder& pictures, const QString& out, const QString& size = QStringLiteral("64"))
{
    return {QStringLiteral("thumbs"), QStringLiteral("--quiet"), pictures.path(), QStringLiteral("--size"), size,
            QStringLiteral("--out"), out, QStringLiteral("--jobs"), QStringLiteral("2")};
}

QSize sizeOf(const QString& path)
{
    return QImageReader(path).size();
}

} // namespace

TEST(CliThumbs, WritesOneThumbnailPerPictureAtTheSizeAsked)
{
    TempFolder pictures;
    pictures.writePicture(QStringLiteral("wide.jpg"), QSize(400, 200));
    pictures.writePicture(QStringLiteral("照片 tall.png"), QSize(100, 300));
    pictures.write(QStringLiteral("notes.txt"));
    TempFolder out;
    const CliResult result = runCli(thumbsArguments(pictures, out.filePath(QStringLiteral("thumbs"))));
    EXPECT_EQ(result.exitCode, 0) << result.errText().toStdString();
    EXPECT_EQ(out.entries(QStringLiteral("thumbs")),
              (QStringList{QStringLiteral("wide.jpg.jpg"), QStringLiteral("照片 tall.png.jpg")}));
    EXPECT_EQ(sizeOf(out.filePath(QStringLiteral("thumbs/wide.jpg.jpg"))), QSize(64, 32));
    EXPECT_EQ(sizeOf(out.filePath(QStringLiteral("thumbs/照片 tall.png.jpg"))), QSize(21, 64));
    EXPECT_TRUE(result.outText().startsWith(QStringLiteral("2 thumbnails written")));
}

// Names that are not UTF-8 and differ only in those bytes: each picture gets its own thumbnail, named by its
// own bytes (Qt would have made both "caf\uFFFD.jpg.jpg", the second written over the first).
TEST(CliThumbs, NamesThatAreNotUtf8KeepTheirOwnBytesAndThumbnails)
{
    TempFolder pictures;
    const QByteArray wide =
        pictures.read(QFileInfo(pictures.writePicture(QStringLiteral("w.png"), {200, 100})).fileName());
    const QByteArray tall =
        pictures.read(QFileInfo(pictures.writePicture(QStringLiteral("t.png"), {100, 200})).fileName());
    QFile::remove(pictures.filePath(QStringLiteral("w.png")));
    QFile::remove(pictures.filePath(QStringLiteral("t.png")));
    const QByteArray folder = QFile::encodeName(pictures.path()) + '/';
    for (const auto& [name, content] :
         {std::pair{QByteArray("caf\xe9.png"), wide}, std::pair{QByteArray("caf\xe8.png"), tall}}) {
        QFile file;
        ASSERT_TRUE(file.open(::fopen(QByteArray(folder + name).constData(), "wb"), QIODevice::WriteOnly,
                              QFileDevice::AutoCloseHandle));
        file.write(content);
    }
    TempFolder out;
    const CliResult result = runCli(thumbsArguments(pictures, out.path()));
    ASSERT_EQ(result.exitCode, 0) << result.errText().toStdString();
    const QByteArray thumbs = QFile::encodeName(out.path()) + '/';
    for (const auto& [name, size] : {std::pair{QByteArray("caf\xe9.png.jpg"), QSize(64, 32)},
                                     std::pair{QByteArray("caf\xe8.png.jpg"), QSize(32, 64)}}) {
        QFile file;
        FILE* handle = ::fopen(QByteArray(thumbs + name).constData(), "rb");
        ASSERT_NE(handle, nullptr) << name.toHex().constData();
        ASSERT_TRUE(file.open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
        EXPECT_EQ(QImageReader(&file).size(), size) << name.toHex().constData();
    }
}

TEST(CliThumbs, ABrokenPictureIsCountedAndTheRestAreWritten)
{
    TempFolder pictures;
    pictures.writePicture(QStringLiteral("good.jpg"), QSize(300, 200));
    const QByteArray whole = pictures.read(QStringLiteral("good.jpg"));
    pictures.write(QStringLiteral("cut.jpg"), whole.left(whole.size() / 2));
    TempFolder out;
    const CliResult result = runCli(thumbsArguments(pictures, out.path()));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(out.entries(), QStringList{QStringLiteral("good.jpg.jpg")});
    EXPECT_TRUE(result.outText().contains(QStringLiteral("1 failed")));
    EXPECT_TRUE(result.errText().contains(QStringLiteral("lumaro-cli thumbs: cut.jpg: "))) // despite --quiet
        << result.errText().toStdString();
}

TEST(CliThumbs, KeepsForeignFilesAndReplacesItsOwnEarlierThumbnails)
{
    TempFolder pictures;
    pictures.writePicture(QStringLiteral("a.jpg"), QSize(300, 200));
    pictures.writePicture(QStringLiteral("b.jpg"), QSize(300, 200));
    TempFolder out;
    out.write(QStringLiteral("b.jpg.jpg"), QByteArrayLiteral("my own notes, not a thumbnail"));

    const CliResult first = runCli(thumbsArguments(pictures, out.path()));
    EXPECT_EQ(first.exitCode, 1);
    EXPECT_EQ(out.read(QStringLiteral("b.jpg.jpg")), QByteArrayLiteral("my own notes, not a thumbnail"));
    EXPECT_EQ(sizeOf(out.filePath(QStringLiteral("a.jpg.jpg"))), QSize(64, 42));

    // A second run at another size replaces its own thumbnail, and still keeps the foreign file.
    const CliResult second = runCli(thumbsArguments(pictures, out.path(), QStringLiteral("32")));
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_EQ(sizeOf(out.filePath(QStringLiteral("a.jpg.jpg"))), QSize(32, 21));
    EXPECT_EQ(out.read(QStringLiteral("b.jpg.jpg")), QByteArrayLiteral("my own notes, not a thumbnail"));
}

TEST(CliThumbs, BadUsageIsRefusedWithExitTwoAndNothingWritten)
{
    TempFolder pictures;
    pictures.writePicture(QStringLiteral("a.jpg"));
    TempFolder out;
    const QString file = out.write(QStringLiteral("file"));
    const QString dir = out.filePath(QStringLiteral("dir"));
    const QList<QStringList> cases{
        {QStringLiteral("thumbs"), pictures.filePath(QStringLiteral("missing")), QStringLiteral("--out"), dir},
        {QStringLiteral("thumbs"), pictures.filePath(QStringLiteral("a.jpg")), QStringLiteral("--out"), dir},
        {QStringLiteral("thumbs"), pictures.path(), QStringLiteral("--out"), file},
        {QStringLiteral("thumbs"), pictures.path(), QStringLiteral("--out"), dir, QStringLiteral("--size"),
         QStringLiteral("0")},
        {QStringLiteral("thumbs"), pictures.path(), QStringLiteral("--out"), dir, QStringLiteral("--jobs"),
         QStringLiteral("many")},
        {QStringLiteral("thumbs"), pictures.path()},
        {QStringLiteral("thumbs"), pictures.path(), QStringLiteral("--out"), pictures.path()},
    };
    for (const QStringList& arguments : cases) {
        const CliResult result = runCli(arguments);
        EXPECT_EQ(result.exitCode, 2) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_FALSE(result.err.isEmpty());
    }
    EXPECT_FALSE(QFile::exists(dir));
    EXPECT_EQ(pictures.entries(), QStringList{QStringLiteral("a.jpg")});
}

// Thumbnails and pose tiles go to a folder of the user's choosing: one they may not write into is refused
// before a picture is decoded, not after every one was.
TEST(CliOutputFolder, AReadOnlyOneIsRefusedBeforeAnyPictureIsRead)
{
    if (runningAsRoot())
        GTEST_SKIP() << "root may write into a read-only folder";
    TempFolder pictures;
    pictures.writePicture(QStringLiteral("a.jpg"));
    TempFolder out;
    QFile::setPermissions(out.path(), QFile::ReadOwner | QFile::ExeOwner);
    for (const auto& [command, option] : {std::pair{"thumbs", "--out"}, std::pair{"pose", "--tiles"}}) {
        const CliResult result =
            runCli({QString::fromLatin1(command), pictures.path(), QString::fromLatin1(option), out.path()});
        EXPECT_EQ(result.exitCode, 2) << command;
        EXPECT_TRUE(result.errText().contains(QStringLiteral("a read-only folder")))
            << result.errText().toStdString();
    }
    QFile::setPermissions(out.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_TRUE(out.entries().isEmpty());
    EXPECT_EQ(pictures.entries(), QStringList{QStringLiteral("a.jpg")}) << "no _index for a run refused";
}
