// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/ByteCountFormatter.h"
#include "cards/CleanOffer.h"
#include "cards/PairingAnalyzer.h"
#include "cards/PairingCleaner.h"
#include "platform/FreedesktopTrash.h"
#include "tests/cards/FolderTrash.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using namespace lumaro::cards;
using lumaro::testing::FolderTrash;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

// `pairs` JPG+RAW twins and `orphans` RAW files without a JPG.
void fill(TempFolder& jpg, TempFolder& raw, int pairs, int orphans)
{
    for (int i = 0; i < pairs; ++i) {
        jpg.write(QStringLiteral("IMG_%1.JPG").arg(i, 4, 10, QLatin1Char('0')));
        raw.write(QStringLiteral("IMG_%1.CR3").arg(i, 4, 10, QLatin1Char('0')), QByteArray(1000, 'r'));
    }
    for (int i = 0; i < orphans; ++i)
        raw.write(QStringLiteral("IMG_%1.CR3").arg(5000 + i), QByteArray(2000, 'o'));
}

} // namespace

struct OfferCase
{
    int pairs;
    int orphans;
    CleanOffer::Kind kind;
    const char* message;
};

class SafetyRule : public ::testing::TestWithParam<OfferCase>
{
};

TEST_P(SafetyRule, OffersACleanOnlyFromFourMatchedFiles)
{
    const OfferCase c = GetParam();
    TempFolder jpg;
    TempFolder raw;
    fill(jpg, raw, c.pairs, c.orphans);

    const CleanOffer offer = CleanOffer::decide(PairingAnalyzer::analyze(jpg.path(), raw.path()));

    EXPECT_EQ(offer.kind, c.kind);
    EXPECT_EQ(offer.message, QString::fromUtf8(c.message));
    EXPECT_EQ(offer.fileCount, offer.canClean() ? c.orphans : 0);
    EXPECT_EQ(offer.totalSize, offer.canClean() ? qint64(c.orphans) * 2000 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    MatchedCounts, SafetyRule,
    ::testing::Values(OfferCase{0, 5, CleanOffer::Kind::nothingMatched, "两个文件夹里，没有匹配的内容，请再检查一下"},
                      OfferCase{1, 50, CleanOffer::Kind::tooFewMatched, "匹配数量较少（≤3），为防误删暂不提供清理"},
                      OfferCase{3, 50, CleanOffer::Kind::tooFewMatched, "匹配数量较少（≤3），为防误删暂不提供清理"},
                      OfferCase{4, 50, CleanOffer::Kind::clean, ""},
                      OfferCase{4, 0, CleanOffer::Kind::nothingToClean, "未发现可清理的RAW文件"}));

TEST(PairingCleaner, MovesEveryOrphanToTheTrashAndKeepsThePairs)
{
    TempFolder jpg;
    TempFolder raw;
    TempFolder trashFolder;
    fill(jpg, raw, 4, 3);
    FolderTrash trash(trashFolder.path());
    const AnalysisResults results = PairingAnalyzer::analyze(jpg.path(), raw.path());
    std::vector<double> progress;

    const CleanResult result = PairingCleaner(trash).clean(results.unmatchedFiles, [&](double p) { progress.push_back(p); });

    EXPECT_TRUE(result.success);
    EXPECT_EQ(result.cleanedFilesCount, 3);
    EXPECT_EQ(result.freedSpace, 6000);
    EXPECT_EQ(result.message, QStringLiteral("清理完成！已删除 3 个冗余RAW文件，释放了 ") + ByteCountFormatter::string(6000));
    EXPECT_EQ(raw.entries().size(), 4);
    EXPECT_EQ(trashFolder.entries().size(), 3);
    EXPECT_EQ(progress, (std::vector<double>{1.0 / 3, 2.0 / 3, 1.0}));
}

TEST(PairingCleaner, AnOrphansSidecarGoesToTheTrashWithIt)
{
    TempFolder jpg;
    TempFolder raw;
    TempFolder trashFolder;
    fill(jpg, raw, 4, 1);
    const AnalysisResults results = PairingAnalyzer::analyze(jpg.path(), raw.path());
    ASSERT_EQ(results.unmatchedFiles.size(), 1);
    raw.write(QFileInfo(results.unmatchedFiles.constFirst()).fileName() + QStringLiteral(".xmp"), "rating");
    FolderTrash trash(trashFolder.path());
    PairingCleaner(trash).clean(results.unmatchedFiles);
    EXPECT_EQ(trashFolder.entries().size(), 2);
    EXPECT_EQ(raw.entries().size(), 4);
}

TEST(PairingCleaner, LogsAndCountsAFileTheTrashRefusesAndGoesOn)
{
    TempFolder raw;
    TempFolder trashFolder;
    const QStringList files{raw.write(QStringLiteral("a.CR2")), raw.write(QStringLiteral("b.CR2")),
                            raw.write(QStringLiteral("c.CR2"))};
    FolderTrash trash(trashFolder.path());
    trash.refuse(QStringLiteral("b.CR2"));
    LogCapture log;

    const CleanResult result = PairingCleaner(trash).clean(files);

    EXPECT_FALSE(result.success);
    EXPECT_EQ(result.cleanedFilesCount, 2);
    EXPECT_EQ(result.failedFilesCount, 1);
    EXPECT_EQ(result.message, QStringLiteral("清理过程中出现错误，请检查文件权限"));
    EXPECT_TRUE(raw.exists(QStringLiteral("b.CR2")));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("Error moving file to trash: ")), 1);
}

TEST(PairingCleaner, AllFailingIsTheCleanFailedMessage)
{
    TempFolder raw;
    TempFolder trashFolder;
    FolderTrash trash(trashFolder.path());

    const CleanResult result = PairingCleaner(trash).clean({raw.filePath(QStringLiteral("gone.CR2"))});

    EXPECT_EQ(result.cleanedFilesCount, 0);
    EXPECT_EQ(result.message, QStringLiteral("清理失败，请检查文件权限"));
}

TEST(PairingCleaner, TheFreedesktopTrashKeepsWhatItTakesRestorable)
{
    TempFolder raw;
    const QString file = raw.write(QStringLiteral("orphan.CR2"), "raw bytes");

    const CleanResult result = PairingCleaner(lumaro::platform::FreedesktopTrash::shared()).clean({file});

    ASSERT_TRUE(result.success) << result.message.toStdString();
    EXPECT_FALSE(raw.exists(QStringLiteral("orphan.CR2")));
    const QString trashed = qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files/orphan.CR2");
    QFile copy(trashed);
    ASSERT_TRUE(copy.open(QIODevice::ReadOnly)) << trashed.toStdString();
    EXPECT_EQ(copy.readAll(), QByteArray("raw bytes"));
}

struct SizeCase
{
    qint64 bytes;
    const char* text;
};

class ByteCounts : public ::testing::TestWithParam<SizeCase>
{
};

TEST_P(ByteCounts, AreShownInMegabytesOrGigabytes)
{
    EXPECT_EQ(ByteCountFormatter::string(GetParam().bytes), QString::fromUtf8(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Sizes, ByteCounts,
                         ::testing::Values(SizeCase{0, "Zero KB"}, SizeCase{500'000, "0.5 MB"},
                                           SizeCase{1'000'000, "1 MB"}, SizeCase{12'345'678, "12.3 MB"},
                                           SizeCase{999'960'000, "1 GB"}, SizeCase{1'250'000'000, "1.25 GB"},
                                           SizeCase{25'000'000'000, "25 GB"},
                                           SizeCase{1'234'560'000'000, "1,234.56 GB"}));
