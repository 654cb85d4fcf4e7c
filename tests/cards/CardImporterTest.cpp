// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardImporter.h"
#include "cards/CardScanner.h"

#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"
#include "tests/support/XdgTags.h"

#include "platform/files/FileNameCodec.h"

#include <QFile>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace lumaro::cards;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

struct KindCase
{
    const char* name;
    MediaKind kind;
};

class ImportKinds : public ::testing::TestWithParam<KindCase>
{
};

TEST_P(ImportKinds, AreDecidedByTheLowerCasedExtension)
{
    EXPECT_EQ(CardScanner::kindOf(QString::fromUtf8(GetParam().name)), GetParam().kind) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(
    Names, ImportKinds,
    ::testing::Values(KindCase{"IMG_1.JPG", MediaKind::jpg}, KindCase{"IMG_2.jpeg", MediaKind::jpg},
                      KindCase{"IMG_3.HEIC", MediaKind::other}, KindCase{"a.Cr3", MediaKind::raw},
                      KindCase{"a.RW2", MediaKind::raw}, KindCase{"a.dng", MediaKind::raw},
                      KindCase{"a.srw", MediaKind::other}, KindCase{"MVI.MOV", MediaKind::video},
                      KindCase{"v.mkv", MediaKind::video}, KindCase{"v.THM", MediaKind::other},
                      KindCase{"M3100.CTG", MediaKind::other}, KindCase{"noextension", MediaKind::other}));

TEST(CardScanner, WalksTheWholeCardAndSumsWhatItKeeps)
{
    TempFolder card;
    card.write(QStringLiteral("DCIM/100CANON/IMG_1.JPG"), "11");
    card.write(QStringLiteral("DCIM/100CANON/IMG_2.jpeg"), "222");
    card.write(QStringLiteral("DCIM/100CANON/IMG_3.HEIC"), "3333");
    card.write(QStringLiteral("DCIM/100CANON/IMG_1.CR3"), "44444");
    card.write(QStringLiteral("PRIVATE/M4ROOT/CLIP/C0001.MP4"), "666666");
    card.write(QStringLiteral("DCIM/CANONMSC/M3100.CTG"));
    LogCapture log;

    const NewFileInfo found = CardScanner::scan(card.path());

    EXPECT_EQ(found.jpgFiles.size(), 2);
    EXPECT_EQ(found.rawFiles.size(), 1);
    EXPECT_EQ(found.videoFiles, QStringList{card.filePath(QStringLiteral("PRIVATE/M4ROOT/CLIP/C0001.MP4"))});
    EXPECT_EQ(found.totalSize, 2 + 3 + 5 + 6);
    EXPECT_TRUE(log.contains(QStringLiteral("   - JPG文件: 2")));
}

TEST(CardScanner, LeavesWhatTheCardHidesOnItAndReportsIt)
{
    TempFolder card;
    card.write(QStringLiteral("DCIM/100CANON/IMG_1.JPG"));
    card.write(QStringLiteral("DCIM/100CANON/._IMG_1.JPG"));
    card.write(QStringLiteral("DCIM/100CANON/.IMG_2.CR3"));
    card.write(QStringLiteral(".Trash-1000/files/IMG_3.CR3"));
    card.write(QStringLiteral(".Trashes/501/IMG_4.JPG"));
    card.write(QStringLiteral(".Spotlight-V100/Store-V2/x.jpg"));
    card.write(QStringLiteral(".fseventsd/0000000000000001"));
    card.write(QStringLiteral("system volume information/IndexerVolumeGuid.jpg"));
    LogCapture log;

    const NewFileInfo found = CardScanner::scan(card.path());

    EXPECT_EQ(found.jpgFiles, QStringList{card.filePath(QStringLiteral("DCIM/100CANON/IMG_1.JPG"))});
    EXPECT_TRUE(found.rawFiles.isEmpty());
    EXPECT_EQ(
        found.skippedEntries,
        (QStringList{QStringLiteral(".Spotlight-V100"), QStringLiteral(".Trash-1000"),
                     QStringLiteral(".Trashes"), QStringLiteral(".fseventsd"),
                     QStringLiteral("DCIM/100CANON/.IMG_2.CR3"), QStringLiteral("DCIM/100CANON/._IMG_1.JPG"),
                     QStringLiteral("system volume information")}));
    EXPECT_TRUE(log.contains(QStringLiteral("⚠️ 跳过隐藏或系统项: .Trash-1000")));
}

TEST(CardScanner, AMissingCardIsAnEmptyScan)
{
    TempFolder card;
    LogCapture log;

    EXPECT_TRUE(CardScanner::scan(card.filePath(QStringLiteral("gone"))).isEmpty());
    EXPECT_EQ(log.countStartingWith(QStringLiteral("⚠️ 无法创建文件枚举器: ")), 1);
}

TEST(CardImporter, CopiesEachKindIntoItsFolderOfTheNextRoll)
{
    TempFolder card;
    TempFolder work;
    work.makeFolder(QStringLiteral("roll01"));
    work.makeFolder(QStringLiteral("roll07"));
    work.write(QStringLiteral("rollercoaster.jpg"));
    card.write(QStringLiteral("DCIM/100CANON/IMG_1.JPG"), "jpg");
    card.write(QStringLiteral("DCIM/100CANON/IMG_1.CR3"), "raw");
    card.write(QStringLiteral("DCIM/100CANON/MVI_2.MP4"), "video");
    std::vector<QString> statuses;

    const ImportOutcome outcome =
        CardImporter::importFiles(CardScanner::scan(card.path()), work.path(),
                                  {[&](const QString& s) { statuses.push_back(s); }, {}, {}});

    EXPECT_EQ(outcome.destination, work.filePath(QStringLiteral("roll08")));
    EXPECT_EQ(outcome.copiedCount, 3);
    EXPECT_EQ(work.entries(QStringLiteral("roll08")),
              (QStringList{QStringLiteral("JPG"), QStringLiteral("RAW"), QStringLiteral("VIDEO")}));
    EXPECT_EQ(work.read(QStringLiteral("roll08/RAW/IMG_1.CR3")), QByteArray("raw"));
    EXPECT_EQ(work.read(QStringLiteral("roll08/VIDEO/MVI_2.MP4")), QByteArray("video"));
    EXPECT_EQ(statuses.front(), QStringLiteral("正在导入 JPG 文件..."));
    EXPECT_EQ(statuses.back(),
              QStringLiteral("导入的文件已保存到：") + work.filePath(QStringLiteral("roll08")));
    EXPECT_TRUE(card.exists(QStringLiteral("DCIM/100CANON/IMG_1.JPG")))
        << "an import never moves off the card";
}

TEST(CardImporter, AVideoOnlyCardCreatesOnlyTheVideoFolder)
{
    TempFolder card;
    TempFolder work;
    card.write(QStringLiteral("DCIM/100CANON/MVI_1.MOV"));

    const ImportOutcome outcome = CardImporter::importFiles(CardScanner::scan(card.path()), work.path());

    EXPECT_EQ(outcome.destination, work.filePath(QStringLiteral("roll01")));
    EXPECT_EQ(work.entries(QStringLiteral("roll01")), QStringList{QStringLiteral("VIDEO")});
}

TEST(CardImporter, AReusedNameTakesAFreeNameAndOverwritesNothing)
{
    TempFolder card;
    TempFolder work;
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.JPG"), "first");
    card.write(QStringLiteral("DCIM/101CANON/IMG_0001.JPG"), "after the counter wrapped");
    LogCapture log;

    const ImportOutcome outcome = CardImporter::importFiles(CardScanner::scan(card.path()), work.path());

    EXPECT_EQ(outcome.copiedCount, 2);
    EXPECT_EQ(outcome.renamedCount, 1);
    EXPECT_EQ(work.read(QStringLiteral("roll01/JPG/IMG_0001.JPG")), QByteArray("first"));
    EXPECT_EQ(work.read(QStringLiteral("roll01/JPG/IMG_0001_1.JPG")),
              QByteArray("after the counter wrapped"));
    EXPECT_TRUE(log.contains(QStringLiteral("   ⚠️ 文件已存在，使用新路径: ") +
                             work.filePath(QStringLiteral("roll01/JPG/IMG_0001_1.JPG"))));
}

TEST(CardImporter, SidecarsComeAlongAndTakeTheFreeNameOfTheirPicture)
{
    TempFolder card;
    TempFolder work;
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.JPG"), "first");
    card.write(QStringLiteral("DCIM/101CANON/IMG_0001.JPG"), "after the counter wrapped");
    card.write(QStringLiteral("DCIM/101CANON/IMG_0001.JPG.xmp"), "its own");
    card.write(QStringLiteral("DCIM/101CANON/IMG_0001.CR2"), "raw");
    card.write(QStringLiteral("DCIM/101CANON/IMG_0001.xmp"), "shared by the shot");

    const ImportOutcome outcome = CardImporter::importFiles(CardScanner::scan(card.path()), work.path());

    EXPECT_EQ(outcome.failedCount, 0);
    EXPECT_EQ(work.read(QStringLiteral("roll01/JPG/IMG_0001_1.JPG.xmp")), QByteArray("its own"));
    EXPECT_EQ(work.read(QStringLiteral("roll01/JPG/IMG_0001_1.xmp")), QByteArray("shared by the shot"));
    EXPECT_EQ(work.read(QStringLiteral("roll01/RAW/IMG_0001_1.xmp")), QByteArray("shared by the shot"));
    EXPECT_FALSE(work.exists(QStringLiteral("roll01/JPG/IMG_0001.JPG.xmp"))); // not the first shot's
    EXPECT_FALSE(work.exists(QStringLiteral("roll01/JPG/IMG_0001.xmp")));
    EXPECT_TRUE(card.exists(QStringLiteral("DCIM/101CANON/IMG_0001.xmp")));
}

struct WrapCase
{
    const char* title;
    std::vector<std::pair<const char*, const char*>> card; // path on the card, content
    std::vector<std::pair<const char*, const char*>> roll; // path in the roll, content
};

class CounterWrap : public ::testing::TestWithParam<WrapCase>
{
};

TEST_P(CounterWrap, KeepsEachShotsJpgAndRawUnderOneName)
{
    TempFolder card;
    TempFolder work;
    for (const auto& [path, content] : GetParam().card)
        card.write(QString::fromUtf8(path), content);

    const ImportOutcome outcome = CardImporter::importFiles(CardScanner::scan(card.path()), work.path());

    EXPECT_EQ(outcome.failedCount, 0);
    QStringList expected;
    QStringList found;
    for (const auto& [path, content] : GetParam().roll) {
        expected << QString::fromUtf8(path) + QLatin1Char('=') + QString::fromUtf8(content);
        found << QString::fromUtf8(path) + QLatin1Char('=') +
                     QString::fromUtf8(work.read(QStringLiteral("roll01/") + QString::fromUtf8(path)));
    }
    EXPECT_EQ(found, expected);
    EXPECT_EQ(work.entries(QStringLiteral("roll01/JPG")).size() +
                  work.entries(QStringLiteral("roll01/RAW")).size(),
              qsizetype(GetParam().roll.size()))
        << "nothing else was written";
}

INSTANTIATE_TEST_SUITE_P(
    Shots, CounterWrap,
    ::testing::Values(
        WrapCase{"jpg only, then a pair",
                 {{"DCIM/100CANON/IMG_0001.JPG", "A"},
                  {"DCIM/101CANON/IMG_0001.JPG", "B"},
                  {"DCIM/101CANON/IMG_0001.CR3", "B raw"}},
                 {{"JPG/IMG_0001.JPG", "A"}, {"JPG/IMG_0001_1.JPG", "B"}, {"RAW/IMG_0001_1.CR3", "B raw"}}},
        WrapCase{"raw only, then jpg only: never paired with each other",
                 {{"DCIM/100CANON/IMG_0007.CR3", "A raw"}, {"DCIM/101CANON/IMG_0007.JPG", "B"}},
                 {{"RAW/IMG_0007.CR3", "A raw"}, {"JPG/IMG_0007_1.JPG", "B"}}},
        WrapCase{"a pair whose RAW spells the stem in another case",
                 {{"DCIM/100CANON/IMG_0002.JPG", "A"},
                  {"DCIM/100CANON/img_0002.cr2", "A raw"},
                  {"DCIM/101CANON/IMG_0002.JPG", "B"},
                  {"DCIM/101CANON/IMG_0002.CR2", "B raw"}},
                 {{"JPG/IMG_0002.JPG", "A"},
                  {"RAW/img_0002.cr2", "A raw"},
                  {"JPG/IMG_0002_1.JPG", "B"},
                  {"RAW/IMG_0002_1.CR2", "B raw"}}}),
    [](const ::testing::TestParamInfo<WrapCase>& info) { return "case" + std::to_string(info.index); });

TEST(CardImporter, ACopyFailingHalfWayLeavesNothingAndTheRestAreCopied)
{
    TempFolder card;
    TempFolder work;
    card.write(QStringLiteral("DCIM/100CANON/IMG_1.JPG"), QByteArray(3 << 20, 'a'));
    card.write(QStringLiteral("DCIM/100CANON/IMG_2.JPG"), QByteArray(3 << 20, 'b'));
    card.write(QStringLiteral("DCIM/100CANON/IMG_3.JPG"), "c");
    LogCapture log;
    CardImporter::Callbacks callbacks;
    callbacks.chunkCopied = [](const QString& source, qint64 copied, qint64 total) {
        return !(source.endsWith(QStringLiteral("IMG_2.JPG")) && copied < total);
    };

    const ImportOutcome outcome =
        CardImporter::importFiles(CardScanner::scan(card.path()), work.path(), callbacks);

    EXPECT_EQ(outcome.copiedCount, 2);
    EXPECT_EQ(outcome.failedCount, 1);
    EXPECT_EQ(work.entries(QStringLiteral("roll01/JPG")),
              (QStringList{QStringLiteral("IMG_1.JPG"), QStringLiteral("IMG_3.JPG")}));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("   [2/3] 复制失败: ")), 1);
    EXPECT_TRUE(log.contains(QStringLiteral("   [3/3] 复制成功: IMG_3.JPG")));
}

TEST(CardImporter, KeepsColourTags)
{
    TempFolder card;
    TempFolder work;
    if (!lumaro::testing::setXdgTags(card.write(QStringLiteral("DCIM/100CANON/IMG_1.JPG")), "green"))
        GTEST_SKIP() << "this file system keeps no extended attributes";

    CardImporter::importFiles(CardScanner::scan(card.path()), work.path());

    EXPECT_EQ(lumaro::testing::xdgTags(work.filePath(QStringLiteral("roll01/JPG/IMG_1.JPG"))),
              QByteArray("green"));
}

TEST(CardImporter, NoImportStartsWithoutALocation)
{
    TempFolder card;
    card.write(QStringLiteral("a.JPG"));

    const ImportOutcome outcome = CardImporter::importFiles(CardScanner::scan(card.path()), QString());

    EXPECT_TRUE(outcome.destination.isEmpty());
    EXPECT_FALSE(outcome.error.isEmpty());
}

// A camera or a computer that wrote names in another encoding: the picture is found and copied byte for byte
// under its own name, not passed by (the card may be formatted next).
TEST(CardImporter, ANameInAnotherEncodingIsImportedLikeAnyOther)
{
    TempFolder card;
    TempFolder work;
    card.write(QStringLiteral("DCIM/100CANON/IMG_1.JPG"), "plain");
    const QByteArray folder = lumaro::platform::FileNameCodec::encode(card.path()) + "/DCIM/caf\xe9";
    ASSERT_EQ(::mkdir(folder.constData(), 0755), 0);
    const QByteArray picture = folder + "/\xc9t\xe9 1.JPG";
    const int fd = ::open(picture.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(::write(fd, "latin-1", 7), 7);
    ::close(fd);

    const NewFileInfo found = CardScanner::scan(card.path());
    ASSERT_EQ(found.jpgFiles.size(), 2) << found.jpgFiles.join(QLatin1Char('|')).toStdString();
    const ImportOutcome outcome = CardImporter::importFiles(found, work.path());
    const QString copied = lumaro::platform::FileNameCodec::decode(
        lumaro::platform::FileNameCodec::encode(work.filePath(QStringLiteral("roll01/JPG"))) + "/\xc9t\xe9 1.JPG");
    QFile file;
    ASSERT_TRUE(lumaro::platform::FileNameCodec::openForReading(file, copied));
    EXPECT_EQ(file.readAll(), QByteArrayLiteral("latin-1"));
    EXPECT_EQ(outcome.destination, work.filePath(QStringLiteral("roll01")));
}
