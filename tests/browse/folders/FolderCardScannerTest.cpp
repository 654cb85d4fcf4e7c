// SPDX-License-Identifier: GPL-3.0-or-later
// Folder cards from real folders: counts, capture dates, colour tags, the cover, and the cache that spares a
// folder that did not change from being read again.
#include "browse/folders/FolderCardScanner.h"
#include "browse/folders/FolderTree.h"
#include "platform/FileTagStore.h"

#include "tests/report/ShootPictures.h"
#include "tests/support/TempFolder.h"

#include <QDateTime>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>

using namespace lumaro::browse;
using namespace lumaro::testing;

namespace {

// Tags kept in memory, counting how often a picture's tags are read (a read means the picture was looked at).
class CountingTagStore : public lumaro::platform::FileTagStore
{
public:
    std::optional<QStringList> tags(const QString& path, QString* = nullptr) const override
    {
        ++reads;
        return path.endsWith(QStringLiteral("1.jpg"))
                   ? QStringList{QStringLiteral("red"), QStringLiteral("Work")}
                   : QStringList{};
    }
    bool setTags(const QString&, const QStringList&, QString* = nullptr) override { return false; }
    mutable std::atomic<int> reads{0};
};

qint64 local(const char* time)
{
    return QDateTime::fromString(QString::fromLatin1(time), QStringLiteral("yyyy:MM:dd HH:mm:ss"))
        .toMSecsSinceEpoch();
}

} // namespace

TEST(FolderCardScanner, CountsDatesAndColoursAndReadsOnlyTheFoldersThatChanged)
{
    TempFolder parent;
    TempFolder cache;
    writeShot(parent, QStringLiteral("may/1.jpg"),
              {{QStringLiteral("Exif.Photo.DateTimeOriginal"), QStringLiteral("2024:05:03 09:00:00")}});
    writeShot(parent, QStringLiteral("may/2.jpg"),
              {{QStringLiteral("Exif.Photo.DateTimeOriginal"), QStringLiteral("2024:05:01 10:00:00")}});
    const QString plain = parent.writePicture(QStringLiteral("may/3.png"));
    QFile file(plain);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::fromMSecsSinceEpoch(local("2024:05:02 12:00:00")),
                                 QFileDevice::FileModificationTime));
    file.close();
    parent.write(QStringLiteral("may/notes.txt"));
    parent.writePicture(QStringLiteral("june/1.jpg"));
    parent.makeFolder(QStringLiteral("empty"));
    const QStringList children{parent.filePath(QStringLiteral("empty")),
                               parent.filePath(QStringLiteral("june")),
                               parent.filePath(QStringLiteral("may"))};

    CountingTagStore tags;
    FolderCardScanner scanner(&tags, cache.path());
    const QList<FolderCard> cold = scanner.scan(parent.path(), children);
    ASSERT_EQ(cold.size(), 3);
    EXPECT_EQ(cold.at(0).pictureCount, 0);
    EXPECT_EQ(cold.at(0).coverPath(), QString());
    const FolderCard& may = cold.at(2);
    EXPECT_EQ(may.pictureCount, 3);
    EXPECT_EQ(may.firstTaken, local("2024:05:01 10:00:00"));
    EXPECT_EQ(may.lastTaken, local("2024:05:03 09:00:00"));
    EXPECT_EQ(may.picturesByDay,
              (QMap<QDate, int>{{QDate(2024, 5, 1), 1}, {QDate(2024, 5, 2), 1}, {QDate(2024, 5, 3), 1}}));
    EXPECT_EQ(may.colourCounts, (QMap<QString, int>{{QStringLiteral("red"), 1}}));
    EXPECT_EQ(may.coverPath(), parent.filePath(QStringLiteral("may/1.jpg")));
    EXPECT_EQ(may.coverPath([&](const QString& path) { return path.endsWith(QStringLiteral("3.png")); }),
              plain);
    EXPECT_EQ(tags.reads, 4);

    // Warm: the same cards (their days too), and no picture opened.
    tags.reads = 0;
    QList<QList<FolderCard>> batches;
    EXPECT_EQ(FolderCardScanner(&tags, cache.path())
                  .scan(parent.path(), children,
                        [&](const QList<FolderCard>& batch) {
                            batches << batch;
                            return true;
                        }),
              cold);
    EXPECT_EQ(tags.reads, 0);
    EXPECT_EQ(batches.size(), 1);

    // One picture changed: only its folder is read again.
    parent.write(QStringLiteral("june/1.jpg"), "rewritten");
    scanner.scan(parent.path(), children);
    EXPECT_EQ(tags.reads, 1);
}

TEST(FolderCardScanner, ACacheFileThatIsNotOursIsReadAsEmptyAndReplaced)
{
    TempFolder parent;
    TempFolder cache;
    parent.writePicture(QStringLiteral("a/1.jpg"));
    CountingTagStore tags;
    FolderCardScanner scanner(&tags, cache.path());
    QFile garbage(scanner.cacheFile(parent.path()));
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
    garbage.write("{\"version\": 1, \"parent\": \"/elsewhere\", \"cards\": {\"a\": {\"count\": 99}}}");
    garbage.close();
    EXPECT_EQ(scanner.scan(parent.path(), {parent.filePath(QStringLiteral("a"))}).at(0).pictureCount, 1);
    EXPECT_EQ(tags.reads, 1);
}

TEST(FolderTree, WalksDepthFirstWithCountsLikeDeepMode)
{
    TempFolder root;
    root.writePicture(QStringLiteral("1.jpg"));
    root.writePicture(QStringLiteral("b/x/1.jpg"));
    root.writePicture(QStringLiteral("b/x/2.png"));
    root.makeFolder(QStringLiteral("a"));
    root.makeFolder(QStringLiteral(".hidden/deep"));
    QFile::link(root.path(), root.filePath(QStringLiteral("b/loop")));
    bool truncated = true;
    const QList<FolderTreeEntry> tree = FolderTree::walk(root.path(), 100, &truncated);
    QStringList walk;
    for (const FolderTreeEntry& entry : tree)
        walk << QStringLiteral("%1:%2:%3")
                    .arg(QDir(root.path()).relativeFilePath(entry.path))
                    .arg(entry.depth)
                    .arg(entry.pictureCount);
    EXPECT_EQ(walk, (QStringList{QStringLiteral(".:0:1"), QStringLiteral("a:1:0"), QStringLiteral("b:1:0"),
                                 QStringLiteral("b/x:2:2")}));
    EXPECT_FALSE(truncated);
    EXPECT_EQ(FolderTree::walk(root.path(), 2, &truncated).size(), 2);
    EXPECT_TRUE(truncated);
}

namespace {

// Rewrites the cache entry of `child` through `edit`, keeping its signature: the scan then trusts it.
void editCachedCard(const QString& file, const QString& child, const std::function<void(QJsonObject&)>& edit)
{
    QFile cache(file);
    ASSERT_TRUE(cache.open(QIODevice::ReadOnly));
    QJsonObject root = QJsonDocument::fromJson(cache.readAll()).object();
    cache.close();
    QJsonObject cards = root.value(QStringLiteral("cards")).toObject();
    QJsonObject card = cards.value(child).toObject();
    ASSERT_FALSE(card.isEmpty());
    edit(card);
    cards.insert(child, card);
    root.insert(QStringLiteral("cards"), cards);
    ASSERT_TRUE(cache.open(QIODevice::WriteOnly | QIODevice::Truncate));
    cache.write(QJsonDocument(root).toJson());
}

} // namespace

TEST(FolderCardScanner, ACachedCardThatDoesNotReadBackWholeIsReadFromThePicturesAgain)
{
    // A count that is not the names' (99 pictures shown for 2), and figures beyond qint64 (cast from double:
    // undefined behaviour) or negative, as a damaged or edited file may hold.
    const std::pair<const char*, QJsonValue> damages[] = {
        {"count", 99},
        {"first", 1e300},
        {"last", -1.0},
        {"colours", QJsonObject{{"red", -3}}},
        {"days", QJsonObject{{"2024-05-01", 1e12}}},
    };
    for (const auto& damage : damages) {
        // Named, not bound: clang 14 cannot capture a structured binding in the lambda below.
        const char* key = damage.first;
        const QJsonValue& value = damage.second;
        TempFolder parent;
        TempFolder cache;
        parent.writePicture(QStringLiteral("a/1.jpg"));
        parent.writePicture(QStringLiteral("a/2.jpg"));
        const QStringList children{parent.filePath(QStringLiteral("a"))};
        CountingTagStore tags;
        FolderCardScanner scanner(&tags, cache.path());
        const QList<FolderCard> fresh = scanner.scan(parent.path(), children);
        editCachedCard(scanner.cacheFile(parent.path()), QStringLiteral("a"),
                       [&](QJsonObject& card) { card.insert(QLatin1String(key), value); });
        const QList<FolderCard> again = scanner.scan(parent.path(), children);
        EXPECT_EQ(again, fresh) << key;
        EXPECT_EQ(again.at(0).pictureCount, 2) << key;
    }
}
