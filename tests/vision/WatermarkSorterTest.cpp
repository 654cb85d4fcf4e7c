// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkSorter.h"

#include "platform/files/FileNameCodec.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace lumaro::vision;
using namespace lumaro::testing;
using lumaro::platform::FileMover;
using lumaro::platform::FileNameCodec;
using lumaro::platform::RenameResult;

namespace {

WatermarkResult read(const QString& name, const QString& identifier)
{
    WatermarkResult r;
    r.fileName = name;
    r.identifier = identifier;
    r.kind = identifier.isEmpty() ? QString() : QStringLiteral("handle");
    return r;
}

// Three saved pictures: two by one poster, one without a readable stamp.
QList<WatermarkResult> threePictures(TempFolder& folder)
{
    folder.write(QStringLiteral("a.jpg"), "A");
    folder.write(QStringLiteral("b.jpg"), "B");
    folder.write(QStringLiteral("c.jpg"), "C");
    return {read(QStringLiteral("a.jpg"), QStringLiteral("@lily")),
            read(QStringLiteral("b.jpg"), QStringLiteral("@lily")), read(QStringLiteral("c.jpg"), {})};
}

// A mover whose renames fail as across two volumes, so every move takes the copy-then-remove way.
FileMover crossVolumeMover()
{
    return FileMover([](const QString&, const QString&) {
        RenameResult result;
        result.crossDevice = true;
        return result;
    });
}

} // namespace

TEST(WatermarkSorter, ADryRunListsEveryMoveAndChangesNothing)
{
    TempFolder folder;
    const auto results = threePictures(folder);
    const QStringList before = folder.entries();
    const WatermarkSortReport report = WatermarkSorter().sort(folder.path(), results, {{}, false, true, {}});
    ASSERT_EQ(report.moved.size(), 2);
    EXPECT_EQ(report.moved[0].folder, QStringLiteral("@lily"));
    EXPECT_EQ(report.unidentified, QStringList{QStringLiteral("c.jpg")});
    EXPECT_TRUE(report.logPath.isEmpty());
    EXPECT_EQ(folder.entries(), before);
}

TEST(WatermarkSorter, SortsIntoPosterFoldersAndUndoPutsEveryPictureBackExactly)
{
    for (const bool acrossVolumes : {false, true}) {
        TempFolder folder;
        TempFolder target;
        const auto results = threePictures(folder);
        const WatermarkSorter sorter(acrossVolumes ? crossVolumeMover() : FileMover());
        const WatermarkSortReport report = sorter.sort(
            folder.path(), results, {target.filePath(QStringLiteral("sorted")), false, false, {}});
        EXPECT_EQ(report.moved.size(), 2);
        EXPECT_EQ(target.read(QStringLiteral("sorted/@lily/b.jpg")), "B");
        EXPECT_FALSE(folder.exists(QStringLiteral("a.jpg")));
        EXPECT_TRUE(folder.exists(QStringLiteral("c.jpg"))) << "a picture without an identifier stays";
        ASSERT_TRUE(report.logPath.startsWith(folder.filePath(QStringLiteral("_index/watermark_moves_"))));

        const WatermarkUndoReport undone = sorter.undo(report.logPath);
        EXPECT_EQ(undone.restored, 2);
        EXPECT_TRUE(undone.conflicts.isEmpty());
        EXPECT_EQ(folder.read(QStringLiteral("a.jpg")), "A");
        EXPECT_EQ(folder.read(QStringLiteral("b.jpg")), "B");
        EXPECT_FALSE(target.exists(QStringLiteral("sorted"))) << "the folders the sort made go again";
        EXPECT_EQ(sorter.undo(report.logPath).alreadyBack, 2) << "a second undo changes nothing";
    }
}

TEST(WatermarkSorter, NeverOverwritesEitherWay)
{
    TempFolder folder;
    const auto results = threePictures(folder);
    folder.write(QStringLiteral("@lily/a.jpg"), "older a");
    const WatermarkSortReport report =
        WatermarkSorter().sort(folder.path(), results, {folder.path(), false, false, {}});
    EXPECT_EQ(report.skipped.size(), 1);
    EXPECT_EQ(folder.read(QStringLiteral("@lily/a.jpg")), "older a");
    EXPECT_EQ(folder.read(QStringLiteral("a.jpg")), "A");
    EXPECT_EQ(folder.read(QStringLiteral("@lily/b.jpg")), "B");

    folder.write(QStringLiteral("b.jpg"), "a new b"); // the old name is taken again before the undo
    const WatermarkUndoReport undone = WatermarkSorter().undo(report.logPath);
    EXPECT_EQ(undone.conflicts.size(), 1);
    EXPECT_EQ(folder.read(QStringLiteral("b.jpg")), "a new b");
    EXPECT_EQ(folder.read(QStringLiteral("@lily/b.jpg")), "B");
    EXPECT_EQ(folder.read(QStringLiteral("@lily/a.jpg")), "older a");
}

TEST(WatermarkSorter, UndoingACopyRemovesOnlyCopiesThatAreStillTheOriginal)
{
    TempFolder folder;
    const auto results = threePictures(folder);
    const WatermarkSortReport report = WatermarkSorter().sort(folder.path(), results, {{}, true, false, {}});
    EXPECT_EQ(folder.read(QStringLiteral("a.jpg")), "A");
    EXPECT_EQ(folder.read(QStringLiteral("@lily/a.jpg")), "A");
    folder.write(QStringLiteral("@lily/b.jpg"), "edited since");
    const WatermarkUndoReport undone = WatermarkSorter().undo(report.logPath);
    EXPECT_EQ(undone.restored, 1);
    EXPECT_FALSE(folder.exists(QStringLiteral("@lily/a.jpg")));
    EXPECT_EQ(folder.read(QStringLiteral("@lily/b.jpg")), "edited since");
    EXPECT_EQ(folder.read(QStringLiteral("a.jpg")), "A");
}

TEST(WatermarkSorter, ABatchCutShortCanStillBeUndoneFromItsLog)
{
    TempFolder folder;
    const auto results = threePictures(folder);
    int calls = 0;
    const WatermarkSorter failingSecond(FileMover([&calls](const QString& from, const QString& to) {
        if (++calls == 2)
            return RenameResult{false, false, false, QStringLiteral("input/output error")};
        return lumaro::platform::systemRenameWithoutReplacing()(from, to);
    }));
    const WatermarkSortReport report = failingSecond.sort(folder.path(), results, {{}, false, false, {}});
    EXPECT_EQ(report.moved.size(), 1);
    EXPECT_EQ(report.failures.size(), 1);
    EXPECT_EQ(folder.read(QStringLiteral("b.jpg")), "B");
    const WatermarkUndoReport undone = WatermarkSorter().undo(report.logPath);
    EXPECT_EQ(undone.restored, 1);
    EXPECT_EQ(folder.read(QStringLiteral("a.jpg")), "A");
}

TEST(WatermarkSorter, AnUnusableLogIsRefusedWhole)
{
    TempFolder folder;
    const QString notALog = folder.write(QStringLiteral("x.json"), R"({"operation": "move", "moves": []})");
    EXPECT_FALSE(WatermarkSorter().undo(notALog).error.isEmpty());
    EXPECT_FALSE(WatermarkSorter().undo(folder.filePath(QStringLiteral("missing.json"))).error.isEmpty());
    // A name that would leave its folder is never used.
    const QString hostile =
        folder.write(QStringLiteral("y.json"),
                     QStringLiteral(R"({"operation":"move","sourceFolderPath":"%1","targetFolderPath":"%1",
            "moves":[{"fileName":"../outside.jpg","folder":"@a"}]})")
                         .arg(folder.path())
                         .toUtf8());
    const WatermarkUndoReport undone = WatermarkSorter().undo(hostile);
    EXPECT_EQ(undone.restored + undone.alreadyBack + int(undone.conflicts.size()), 0);
}

// A card from an old camera or a Windows zip gives names that are not UTF-8: the move log must bring such a
// picture back by its own bytes, or the undo counts it as back while it stays in the poster's folder.
TEST(WatermarkSorter, ANameThatIsNotUtf8IsSortedAndPutBackByItsOwnBytes)
{
    const QByteArray rawName("caf\xe9.jpg");
    const QString name = FileNameCodec::decode(rawName);
    for (const bool copy : {false, true}) {
        TempFolder folder;
        folder.writeNamedByBytes(rawName, "PICTURE");
        const WatermarkSorter sorter;
        const WatermarkSortReport report =
            sorter.sort(folder.path(), {read(name, QStringLiteral("@lily"))}, {{}, copy, false, {}});
        ASSERT_EQ(report.moved.size(), 1) << (copy ? "copy" : "move");
        const QString sorted = folder.filePath(QStringLiteral("@lily/")) + name;
        EXPECT_TRUE(FileNameCodec::isFile(sorted));

        const WatermarkUndoReport undone = sorter.undo(report.logPath);
        EXPECT_EQ(undone.restored, 1) << (copy ? "copy" : "move");
        EXPECT_TRUE(undone.conflicts.isEmpty());
        EXPECT_FALSE(FileNameCodec::exists(sorted));
        EXPECT_EQ(FileNameCodec::readAll(folder.filePath(name)), QByteArrayLiteral("PICTURE"));
    }
}
