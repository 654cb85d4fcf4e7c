// SPDX-License-Identifier: GPL-3.0-or-later
// A folder named in another encoding (an old share, a card written by another system): what each reader
// finds in it must be what it finds in a folder named in UTF-8. Qt's file names lose such bytes, so every
// reader must reach the file by the bytes FileNameCodec keeps.
#include "platform/ImageMetadata.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/HiddenList.h"
#include "platform/picture/PictureReader.h"
#include "tests/report/ShootPictures.h"
#include "tests/support/TempFolder.h"

#include <QFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using lumaro::platform::FileNameCodec;

namespace {

using Reading = QString (*)(const QString& folder, const QString& file);

struct ReaderCase
{
    const char* name;
    const char* file;
    Reading read;
};

QString pictureSize(const QString& folder, const QString& file)
{
    const auto decoded = lumaro::platform::PictureReader::read({folder + QLatin1Char('/') + file, 256, true, 0});
    return decoded.isNull() ? QStringLiteral("no picture: ") + decoded.error
                            : QStringLiteral("%1x%2").arg(decoded.image.width()).arg(decoded.image.height());
}

QString captureTime(const QString& folder, const QString& file)
{
    return lumaro::platform::ImageMetadata::read(folder + QLatin1Char('/') + file).captureTime;
}

QString hiddenNames(const QString& folder, const QString&)
{
    QStringList names;
    for (const QByteArray& name : lumaro::platform::HiddenList::names(folder))
        names << QString::fromUtf8(name);
    return names.join(QLatin1Char(','));
}

QByteArray fileBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Copies `bytes` into `folder` under `name` by the folder's own bytes.
void place(const QString& folder, const QString& name, const QByteArray& bytes)
{
    const QByteArray path = FileNameCodec::encode(folder + QLatin1Char('/') + name);
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    ASSERT_GE(fd, 0) << path.constData();
    ASSERT_EQ(::write(fd, bytes.constData(), size_t(bytes.size())), bytes.size());
    ::close(fd);
}

class RawByteFolder : public ::testing::TestWithParam<ReaderCase>
{
};

} // namespace

TEST_P(RawByteFolder, ReadsWhatAUtf8FolderGives)
{
    lumaro::testing::TempFolder temp;
    lumaro::testing::writeShot(temp, QStringLiteral("shot.jpg"),
                               {{QStringLiteral("Exif.Photo.DateTimeOriginal"), QStringLiteral("2024:05:01 10:00:00")}});
    const QMap<QString, QByteArray> files{
        {QStringLiteral("plain.heic"), fileBytes(QStringLiteral(LUMARO_SOURCE_DIR "/fuzz/heif/corpus/plain.heic"))},
        {QStringLiteral("canon.cr2"),
         fileBytes(QStringLiteral(LUMARO_SOURCE_DIR "/fuzz/raw_preview/corpus/canon.cr2"))},
        {QStringLiteral("shot.jpg"), temp.read(QStringLiteral("shot.jpg"))},
        {QStringLiteral(".hidden"), QByteArrayLiteral("shot.jpg\ncanon.cr2\n")}};
    const QString utf8 = temp.makeFolder(QStringLiteral("café"));
    const QString latin1 = FileNameCodec::decode(FileNameCodec::encode(temp.path()) + "/caf\xe9");
    ASSERT_EQ(::mkdir(FileNameCodec::encode(latin1).constData(), 0755), 0);
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        place(utf8, it.key(), it.value());
        place(latin1, it.key(), it.value());
    }

    const QString file = QString::fromUtf8(GetParam().file);
    const QString expected = GetParam().read(utf8, file);
    EXPECT_FALSE(expected.isEmpty() || expected.startsWith(QStringLiteral("no picture"))) << expected.toStdString();
    EXPECT_EQ(GetParam().read(latin1, file), expected);
}

INSTANTIATE_TEST_SUITE_P(Readers, RawByteFolder,
                         ::testing::Values(ReaderCase{"heif", "plain.heic", &pictureSize},
                                           ReaderCase{"rawPreview", "canon.cr2", &pictureSize},
                                           ReaderCase{"jpeg", "shot.jpg", &pictureSize},
                                           ReaderCase{"exifCaptureTime", "shot.jpg", &captureTime},
                                           ReaderCase{"hiddenList", ".hidden", &hiddenNames}),
                         [](const auto& info) { return std::string(info.param.name); });
