// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/FileSystemService.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace lumaro::browse;
using lumaro::testing::TempFolder;

namespace {

QStringList listedNames(const QString& folder)
{
    QStringList names;
    for (const QString& path : FileSystemService::shared().loadImageFiles(folder))
        names << path.section(QLatin1Char('/'), -1);
    return names;
}

} // namespace

TEST(FileSystemService, KeepsTheElevenExtensionsInAnyCaseAndNothingElse)
{
    TempFolder folder;
    const QStringList kept{QStringLiteral("a.JPG"),  QStringLiteral("b.Cr2"),  QStringLiteral("c.jpeg"),
                           QStringLiteral("d.png"),  QStringLiteral("e.HEIC"), QStringLiteral("f.heif"),
                           QStringLiteral("g.tiff"), QStringLiteral("h.TIF"),  QStringLiteral("i.bmp"),
                           QStringLiteral("j.gif"),  QStringLiteral("k.WebP")};
    const QStringList dropped{QStringLiteral(".hidden.jpg"), QStringLiteral("c.nef"),
                              QStringLiteral("d.mov"),       QStringLiteral("noext"),
                              QStringLiteral("jpg"),         QStringLiteral("x.jpg.txt"),
                              QStringLiteral("y.arw"),       QStringLiteral("z.jpgx")};
    for (const QString& name : kept + dropped)
        folder.write(name);
    folder.makeFolder(QStringLiteral("folder.jpg")); // a folder named like a picture is not one
    EXPECT_EQ(listedNames(folder.path()), kept);
}

TEST(FileSystemService, SortsByPlainCodePointOrder)
{
    TempFolder folder;
    const QStringList expected{QStringLiteral("B.jpg"),        QStringLiteral("IMG_10.jpg"),
                               QStringLiteral("IMG_9.jpg"),    QStringLiteral("a b.jpg"),
                               QStringLiteral("a.jpg"),        QStringLiteral("é.jpg"),
                               QStringLiteral("微信图片.jpg"), QStringLiteral("😀.jpg")};
    for (auto it = expected.crbegin(); it != expected.crend(); ++it)
        folder.write(*it);
    EXPECT_EQ(listedNames(folder.path()), expected);
}

TEST(FileSystemService, AnUnreadableFolderGivesAnEmptyListAndALogLine)
{
    TempFolder root;
    const QString file = root.write(QStringLiteral("a.jpg"));
    lumaro::testing::LogCapture log;
    EXPECT_TRUE(FileSystemService::shared().loadImageFiles(file).isEmpty());
    EXPECT_EQ(log.countStartingWith(QStringLiteral("FileSystemService - 加载图像文件失败: ")), 1);
}

TEST(FileSystemService, SubfoldersAndTheDeepWalk)
{
    TempFolder root;
    for (const char* folder : {"b", "a/2", "a/1/x", "a/.hidden", "c"})
        root.makeFolder(QString::fromLatin1(folder));
    root.write(QStringLiteral("a/file.jpg"));
    const auto relative = [&root](const QStringList& paths) {
        QStringList out;
        for (const QString& path : paths)
            out << QDir(root.path()).relativeFilePath(path);
        return out;
    };
    EXPECT_EQ(relative(FileSystemService::shared().subfolders(root.path())),
              (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
    EXPECT_EQ(relative(FileSystemService::shared().recursiveSubfolders(root.path())),
              (QStringList{QStringLiteral("a"), QStringLiteral("a/1"), QStringLiteral("a/1/x"),
                           QStringLiteral("a/2"), QStringLiteral("b"), QStringLiteral("c")}));
}

TEST(FileSystemService, DeepWalkSurvivesALinkLoop)
{
    TempFolder root;
    root.makeFolder(QStringLiteral("a"));
    ASSERT_TRUE(QFile::link(root.path(), root.filePath(QStringLiteral("a/loop"))));
    const QStringList walked = FileSystemService::shared().recursiveSubfolders(root.path());
    EXPECT_LE(walked.size(), 2);
}

TEST(FileSystemService, ResolvePathTakesRelativePathsFromHome)
{
    const QString home = QDir::homePath();
    EXPECT_EQ(FileSystemService::shared().resolvePath(QStringLiteral("Pictures/a")),
              home + QStringLiteral("/Pictures/a"));
    EXPECT_EQ(FileSystemService::shared().resolvePath(QStringLiteral("~/b")), home + QStringLiteral("/b"));
    EXPECT_EQ(FileSystemService::shared().resolvePath(QStringLiteral("/x/./y")), QStringLiteral("/x/y"));
}
