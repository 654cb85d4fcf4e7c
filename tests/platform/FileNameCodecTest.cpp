// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/FileNameCodec.h"
#include "platform/ImageRotator.h"
#include "platform/vision/AnalysisImage.h"

#include "platform/FreedesktopTrash.h"
#include "platform/TrashRestorer.h"
#include "platform/XattrTagStore.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <unistd.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

namespace {

// Whether a file named by `name`'s bytes exactly is there.
bool existsRaw(const TempFolder& folder, const QByteArray& name)
{
    const QByteArray path = QFile::encodeName(folder.path()) + '/' + name;
    return ::access(path.constData(), F_OK) == 0;
}

} // namespace

TEST(FileNameCodec, EveryByteStringComesBackExactly)
{
    const QList<QByteArray> names{
        "IMG_0001.JPG",
        "照片 1.heic",
        "caf\xe9.jpg",                  // Latin-1 from an old card
        "\xc3",                         // cut-short sequence
        "\xc0\xaf.jpg",                 // overlong "/"
        "\xed\xa0\x80.jpg",             // an encoded surrogate
        "\xf4\x90\x80\x80",             // past U+10FFFF
        "\xf0\x9f\x93\xb7 ok \xff\xfe", // an emoji, then two stray bytes
    };
    for (const QByteArray& name : names) {
        const QString decoded = FileNameCodec::decode(name);
        EXPECT_EQ(FileNameCodec::encode(decoded), name) << name.toHex().constData();
        EXPECT_FALSE(decoded.contains(QChar(QChar::ReplacementCharacter))) << name.toHex().constData();
    }
    EXPECT_EQ(FileNameCodec::decode("照片 1.heic"), QStringLiteral("照片 1.heic"));
    EXPECT_FALSE(FileNameCodec::hasRawBytes(QStringLiteral("📷 照片")));
    EXPECT_TRUE(FileNameCodec::hasRawBytes(FileNameCodec::decode("caf\xe9.jpg")));
}

TEST(FileNameCodec, ANameThatIsNotUtf8IsTrashedTaggedAndPutBackWithItsBytes)
{
    TempFolder folder;
    const QByteArray raw("DSC\xb0\xe9 1.jpg");
    const QString path = folder.writeNamedByBytes(raw, "pixels");
    ASSERT_TRUE(FileNameCodec::exists(path));

    if (XattrTagStore::shared().setTags(path, {QStringLiteral("red")})) {
        EXPECT_EQ(XattrTagStore::shared().tags(path), QStringList{QStringLiteral("red")});
    }

    QString error;
    const auto item = FreedesktopTrash().moveToTrash(path, &error);
    ASSERT_TRUE(item) << qPrintable(error);
    EXPECT_FALSE(existsRaw(folder, raw));
    EXPECT_TRUE(FileNameCodec::encode(item->trashedPath).endsWith(QByteArray(QByteArray("/files/") + raw)));
    // The record's Path carries the bytes, percent-encoded one by one, as GLib writes them.
    const QByteArray record = FileNameCodec::readAll(item->trashInfoPath);
    EXPECT_TRUE(record.contains("DSC%B0%E9%201.jpg")) << record.constData();

    const TrashRestorer restorer;
    const auto found = restorer.findByOriginalPath(path);
    ASSERT_EQ(found.size(), 1);
    ASSERT_TRUE(restorer.putBack(found.constFirst().trashedPath, path).ok);
    EXPECT_TRUE(existsRaw(folder, raw));
    EXPECT_EQ(FileNameCodec::readAll(path), QByteArrayLiteral("pixels"));
}

// Every reader of a picture's pixels opens it by the name's bytes: analysed, and turned when its pixels are
// rewritten (a PNG), with "caf\xe9" and "caf\xe8" kept apart.
TEST(FileNameCodec, PicturesWhoseNamesAreNotUtf8AreAnalysedAndTurned)
{
    TempFolder folder;
    const QByteArray wide =
        folder.read(QFileInfo(folder.writePicture(QStringLiteral("w.png"), {60, 20})).fileName());
    const QByteArray tall =
        folder.read(QFileInfo(folder.writePicture(QStringLiteral("t.png"), {20, 50})).fileName());
    const QString widePath = folder.writeNamedByBytes("caf\xe9.png", wide);
    const QString tallPath = folder.writeNamedByBytes("caf\xe8.png", tall);

    const auto analysed = AnalysisImageReader::read(widePath, 512);
    ASSERT_TRUE(analysed);
    EXPECT_EQ(analysed->image.size(), QSize(60, 20));

    ASSERT_EQ(ImageRotator::rotateLeft(tallPath).status, RotationOutcome::Status::rotated);
    const auto turned = AnalysisImageReader::read(tallPath, 512);
    ASSERT_TRUE(turned);
    EXPECT_EQ(turned->image.size(), QSize(50, 20));
    EXPECT_EQ(FileNameCodec::readAll(widePath), wide);
}
