// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DirectoryLister.h"
#include "platform/files/HiddenList.h"

#include "tests/support/TempFolder.h"

#include <QFile>

#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

namespace {

QMap<QString, DirectoryEntry::Kind> listed(const QString& folder)
{
    QMap<QString, DirectoryEntry::Kind> result;
    const auto entries = DirectoryLister::listVisible(folder);
    if (!entries)
        return result;
    for (const auto& entry : *entries)
        result.insert(entry.name(), entry.kind);
    return result;
}

} // namespace

TEST(DirectoryLister, SkipsDotNamesAndNamesListedInDotHidden)
{
    TempFolder root;
    root.write(QStringLiteral("a.jpg"));
    root.write(QStringLiteral(".secret.jpg"));
    root.write(QStringLiteral("b.jpg"));
    root.makeFolder(QStringLiteral("_index"));
    root.write(QStringLiteral(".hidden"), QByteArrayLiteral("_index\nb.jpg\n\n"));
    const auto entries = listed(root.path());
    EXPECT_EQ(entries.keys(), QStringList{QStringLiteral("a.jpg")});
}

// Someone else's file: a pipe is never waited on and a list past the cap hides nothing, so the folder still
// lists instead of hanging the window.
TEST(DirectoryLister, ADotHiddenThatIsAPipeOrTooLargeHidesNothing)
{
    TempFolder root;
    root.write(QStringLiteral("a.jpg"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(root.filePath(QStringLiteral(".hidden"))).constData(), 0600), 0);
    EXPECT_EQ(listed(root.path()).keys(), QStringList{QStringLiteral("a.jpg")});

    TempFolder large;
    large.write(QStringLiteral("a.jpg"));
    large.write(QStringLiteral(".hidden"), QByteArray("a.jpg\n").append(HiddenList::maxBytes, '\n'));
    EXPECT_EQ(listed(large.path()).keys(), QStringList{QStringLiteral("a.jpg")});
}

TEST(DirectoryLister, DotHiddenLinesOfAWindowsEditorHideTheirNames)
{
    TempFolder root;
    root.write(QStringLiteral("a.jpg"));
    root.write(QStringLiteral("b c.jpg"));
    root.write(QStringLiteral(".hidden"), QByteArrayLiteral("a.jpg\r\nb c.jpg\r\n"));
    EXPECT_TRUE(listed(root.path()).isEmpty());
}

TEST(DirectoryLister, LinksCountAsWhatTheyPointTo)
{
    TempFolder root;
    const QString target = root.write(QStringLiteral("real.jpg"));
    const QString folder = root.makeFolder(QStringLiteral("sub"));
    ASSERT_TRUE(QFile::link(target, root.filePath(QStringLiteral("link.jpg"))));
    ASSERT_TRUE(QFile::link(folder, root.filePath(QStringLiteral("linkdir"))));
    ASSERT_TRUE(QFile::link(root.filePath(QStringLiteral("gone")), root.filePath(QStringLiteral("dangling.jpg"))));
    const auto entries = listed(root.path());
    EXPECT_EQ(entries.value(QStringLiteral("link.jpg")), DirectoryEntry::Kind::file);
    EXPECT_EQ(entries.value(QStringLiteral("linkdir")), DirectoryEntry::Kind::directory);
    EXPECT_EQ(entries.value(QStringLiteral("sub")), DirectoryEntry::Kind::directory);
    EXPECT_EQ(entries.value(QStringLiteral("dangling.jpg"), DirectoryEntry::Kind::file), DirectoryEntry::Kind::other);
}

TEST(DirectoryLister, AFileOrAMissingFolderIsAnErrorWithAReason)
{
    TempFolder root;
    const QString file = root.write(QStringLiteral("a.jpg"));
    for (const QString& path : {file, root.filePath(QStringLiteral("missing"))}) {
        QString error;
        EXPECT_FALSE(DirectoryLister::listVisible(path, &error)) << path.toStdString();
        EXPECT_FALSE(error.isEmpty());
    }
}
