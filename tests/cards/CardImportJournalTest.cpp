// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardImportJournal.h"
#include "cards/CardImporter.h"
#include "cards/CardScanner.h"
#include "cards/ShotNamePlanner.h"
#include "platform/FileCopier.h"
#include "platform/volumes/RememberedCardStore.h"

#include "tests/cards/CardLayouts.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QDateTime>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace lumaro::cards;
using lumaro::platform::RememberedCardStore;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

// Scans the card, leaves out what the store remembers, imports the rest with the journal; nullptr-safe.
ImportOutcome importNew(const QString& card, const QString& work, const QString& store,
                        const CardImporter::Callbacks& callbacks = {})
{
    const auto journal = CardImportJournal::open(card, nullptr, store);
    EXPECT_NE(journal, nullptr);
    return CardImporter::importFiles(journal->withoutImported(CardScanner::scan(card)), work, callbacks,
                                     journal.get());
}

} // namespace

TEST(CardImportJournal, RemembersTheCardSoASecondImportCopiesOnlyNewPictures)
{
    TempFolder card;
    TempFolder work;
    TempFolder data;
    const QString store = data.filePath(QStringLiteral("cards.db"));
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.JPG"),
               lumaro::testing::jpegWithCamera("Canon", "Canon EOS R5"));
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.CR3"), "raw");

    EXPECT_EQ(importNew(card.path(), work.path(), store).copiedCount, 2);
    const auto again = CardImportJournal::open(card.path(), nullptr, store);
    const NewFileInfo second = again->withoutImported(CardScanner::scan(card.path()));

    EXPECT_TRUE(second.isEmpty());
    EXPECT_EQ(second.alreadyImportedCount, 2);
    ASSERT_TRUE(again->rememberedCard().has_value());
    EXPECT_EQ(again->rememberedCard()->cameraModel, QStringLiteral("Canon EOS R5"));
    EXPECT_TRUE(again->rememberedCard()->firstImport.isValid());
    EXPECT_TRUE(again->rememberedCard()->lastImport.isValid());
    // The counter wrapped and the camera wrote a new picture under an old name: it is a new file.
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.CR3"), "another raw");
    const NewFileInfo third = again->withoutImported(CardScanner::scan(card.path()));
    EXPECT_EQ(third.rawFiles, QStringList{card.filePath(QStringLiteral("DCIM/100CANON/IMG_0001.CR3"))});
}

TEST(CardImportJournal, AnImportKilledMidCopyIsResumedInItsOwnRollWithoutDuplicates)
{
    TempFolder card;
    TempFolder work;
    TempFolder data;
    const QString store = data.filePath(QStringLiteral("cards.db"));
    for (const char* stem : {"IMG_0001", "IMG_0002", "IMG_0003"}) {
        card.write(QStringLiteral("DCIM/100CANON/%1.JPG").arg(QLatin1String(stem)), QByteArray(1 << 20, 'j'));
        card.write(QStringLiteral("DCIM/100CANON/%1.CR3").arg(QLatin1String(stem)), QByteArray(2 << 20, 'r'));
    }

    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        CardImporter::Callbacks callbacks;
        callbacks.chunkCopied = [](const QString& source, qint64, qint64) {
            if (source.endsWith(QStringLiteral("IMG_0002.CR3")))
                ::raise(SIGKILL); // the power cable, or kill -9, half-way through the RAW files
            return true;
        };
        importNew(card.path(), work.path(), store, callbacks);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
    const QStringList left = work.entries(QStringLiteral("roll01/RAW"));
    ASSERT_EQ(left.size(), 2) << left.join(QLatin1Char(' ')).toStdString();
    EXPECT_TRUE(left.at(0).startsWith(QStringLiteral(".lumaro-copy-"))) << "the partial copy the kill left";

    LogCapture log;
    const ImportOutcome resumed = importNew(card.path(), work.path(), store);

    EXPECT_TRUE(resumed.resumed);
    EXPECT_EQ(resumed.partialCopiesRemoved, 1);
    EXPECT_EQ(resumed.copiedCount, 2);
    EXPECT_EQ(work.entries(), QStringList{QStringLiteral("roll01")});
    EXPECT_EQ(work.entries(QStringLiteral("roll01/JPG")),
              (QStringList{QStringLiteral("IMG_0001.JPG"), QStringLiteral("IMG_0002.JPG"),
                           QStringLiteral("IMG_0003.JPG")}));
    EXPECT_EQ(work.entries(QStringLiteral("roll01/RAW")),
              (QStringList{QStringLiteral("IMG_0001.CR3"), QStringLiteral("IMG_0002.CR3"),
                           QStringLiteral("IMG_0003.CR3")}));
    EXPECT_EQ(work.read(QStringLiteral("roll01/RAW/IMG_0002.CR3")).size(), 2 << 20);
    EXPECT_TRUE(CardImportJournal::open(card.path(), nullptr, store)
                    ->withoutImported(CardScanner::scan(card.path()))
                    .isEmpty());
}

TEST(ShotNamePlanner, AResumedImportTakesAFileAlreadyInPlaceInsteadOfCopyingItTwice)
{
    TempFolder card;
    TempFolder roll;
    const QString source = card.write(QStringLiteral("DCIM/100CANON/IMG_0002.CR3"), "raw");
    roll.makeFolder(QStringLiteral("RAW"));
    // Put in place by the killed import, which died before it could remember it.
    ASSERT_TRUE(lumaro::platform::FileCopier::copyReplacing(
        source, roll.filePath(QStringLiteral("RAW/IMG_0002.CR3"))));
    const QHash<QString, CardFileStamp> stamps{
        {source, {QFileInfo(source).size(), QFileInfo(source).lastModified().toMSecsSinceEpoch()}}};
    const QList<std::pair<QString, QString>> files{{source, roll.filePath(QStringLiteral("RAW"))}};
    const auto shot = [](const QString& path) { return CardImporter::shotKey(path); };

    ShotNamePlanner fresh(QStringList{roll.filePath(QStringLiteral("RAW"))});
    ShotNamePlanner resuming(QStringList{roll.filePath(QStringLiteral("RAW"))});
    resuming.setResuming(true);

    EXPECT_EQ(fresh.plan(files, stamps, shot).value(source).name, QStringLiteral("IMG_0002_1.CR3"));
    const PlannedName taken = resuming.plan(files, stamps, shot).value(source);
    EXPECT_EQ(taken.name, QStringLiteral("IMG_0002.CR3"));
    EXPECT_TRUE(taken.alreadyThere);
}

TEST(RememberedCardStore, RefusesAFileThatIsNoDatabaseAndLeavesItUntouched)
{
    TempFolder data;
    const QByteArray garbage = QByteArray("SQLite format 3").append(QByteArray(4096, '\xa5'));
    const QString path = data.write(QStringLiteral("cards.db"), garbage);
    LogCapture log;

    RememberedCardStore store(path);
    QString error;

    EXPECT_FALSE(store.open(&error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(data.read(QStringLiteral("cards.db")), garbage);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("❌ 无法打开存储卡记录: ")), 1);
}
