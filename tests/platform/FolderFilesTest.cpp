// SPDX-License-Identifier: GPL-3.0-or-later
// The pairing clean sees every file of a folder by a name it can reach again: hidden files, names with spaces,
// and names a card wrote in another encoding.
#include "platform/FolderFiles.h"

#include "platform/files/FileNameCodec.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using lumaro::platform::FileNameCodec;
using lumaro::platform::FolderFiles;

namespace {

struct NamedFile
{
    const char* name;
    QByteArray bytes; // the name as on disk
};

class FolderFilesNames : public ::testing::TestWithParam<NamedFile>
{
};

} // namespace

TEST_P(FolderFilesNames, ListsTheFileByANameThatReachesItAgain)
{
    lumaro::testing::TempFolder folder;
    folder.makeFolder(QStringLiteral("sub"));
    folder.writeNamedByBytes(GetParam().bytes, QByteArray(1234, 'x'));

    QString error;
    const auto files = FolderFiles::list(folder.path(), &error);
    ASSERT_TRUE(files) << error.toStdString();
    ASSERT_EQ(files->size(), 1U) << "the sub-folder is not a file";
    const QString path = folder.path() + QLatin1Char('/') + files->front().name;
    EXPECT_EQ(FileNameCodec::encode(files->front().name), GetParam().bytes);
    EXPECT_EQ(files->front().size, 1234);
    EXPECT_EQ(FolderFiles::sizeOf(path, &error), 1234) << error.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Names, FolderFilesNames,
                         ::testing::Values(NamedFile{"plain", QByteArrayLiteral("IMG_0001.CR3")},
                                           NamedFile{"hidden", QByteArrayLiteral(".IMG_0001.xmp")},
                                           NamedFile{"spacesAndCjk", QByteArrayLiteral("照片 01.jpg")},
                                           NamedFile{"latin1", QByteArrayLiteral("caf\xe9.jpg")}),
                         [](const auto& info) { return std::string(info.param.name); });
