// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/PairingAnalyzer.h"

#include "cards/PairingFileTypes.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace lumaro::cards;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

QStringList namesOf(const QStringList& paths)
{
    QStringList names;
    for (const QString& path : paths)
        names.append(QFileInfo(path).fileName());
    return names;
}

} // namespace

struct SuffixCase
{
    const char* name;
    bool jpg;
    bool raw;
};

class PairingSuffix : public ::testing::TestWithParam<SuffixCase>
{
};

TEST_P(PairingSuffix, IsTestedCaseSensitivelyAgainstTheSpelledOutVariants)
{
    const SuffixCase c = GetParam();
    EXPECT_EQ(PairingFileTypes::isJpgName(QString::fromUtf8(c.name)), c.jpg) << c.name;
    EXPECT_EQ(PairingFileTypes::isRawName(QString::fromUtf8(c.name)), c.raw) << c.name;
}

INSTANTIATE_TEST_SUITE_P(
    Names, PairingSuffix,
    ::testing::Values(SuffixCase{"a.jpg", true, false}, SuffixCase{"a.JPEG", true, false},
                      SuffixCase{"a.Jpg", false, false}, SuffixCase{"a.Cr2", false, false},
                      SuffixCase{"a.CR3", false, true}, SuffixCase{"a.x3f", false, true},
                      SuffixCase{"a.K25", false, true}, SuffixCase{"a.heic", false, false},
                      SuffixCase{"jpg", false, false}, SuffixCase{"a.cr2.txt", false, false},
                      SuffixCase{".CR2", false, true}));

TEST(PairingAnalyzer, PairsNamesThatDifferOnlyInCaseAndIgnoresMixedCaseSuffixes)
{
    TempFolder jpg;
    TempFolder raw;
    jpg.write(QStringLiteral("a.JPG"));
    jpg.write(QStringLiteral("IMG_0001.JPG"));
    jpg.write(QStringLiteral("b.Jpg")); // neither JPG nor RAW
    raw.write(QStringLiteral("A.cr2"), "1234");
    raw.write(QStringLiteral("img_0001.cr3"), "12");
    raw.write(QStringLiteral("b.CR2"), "123456");

    const AnalysisResults results = PairingAnalyzer::analyze(jpg.path(), raw.path());

    EXPECT_TRUE(results.isAnalyzed);
    EXPECT_EQ(namesOf(results.jpgFiles),
              (QStringList{QStringLiteral("IMG_0001.JPG"), QStringLiteral("a.JPG")}));
    EXPECT_EQ(namesOf(results.matchedFiles),
              (QStringList{QStringLiteral("A.cr2"), QStringLiteral("img_0001.cr3")}));
    EXPECT_EQ(namesOf(results.unmatchedFiles), QStringList{QStringLiteral("b.CR2")});
    EXPECT_EQ(results.matchedTotalSize, 6);
    EXPECT_EQ(results.unmatchedTotalSize, 6);
    EXPECT_EQ(results.rawTotalSize, 12);
    EXPECT_EQ(results.matchedJpgCount, 2);
    EXPECT_EQ(results.jpgFiles.constFirst(), jpg.path() + QStringLiteral("/IMG_0001.JPG"));
}

TEST(PairingAnalyzer, PairsNamesThatAreEqualInUnicodeWhateverTheirNormalFormAndCase)
{
    TempFolder jpg;
    TempFolder raw;
    jpg.write(QStringLiteral("caf\u00e9.jpg"));  // precomposed, as Linux keyboards write it
    raw.write(QStringLiteral("CAFE\u0301.CR2")); // decomposed and upper-case, as macOS stores it
    jpg.write(QStringLiteral("\u00c5ngstr\u00f6m.JPG"));
    raw.write(QStringLiteral("\u212bngstro\u0308m.CR2")); // the Angstrom sign is canonically the letter
    raw.write(QStringLiteral("cafe.CR2"));                // no accent: another name

    const AnalysisResults results = PairingAnalyzer::analyze(jpg.path(), raw.path());

    EXPECT_EQ(results.matchedFiles.size(), 2)
        << namesOf(results.matchedFiles).join(QLatin1Char(' ')).toStdString();
    EXPECT_EQ(namesOf(results.unmatchedFiles), QStringList{QStringLiteral("cafe.CR2")});
}

TEST(PairingAnalyzer, NeverSeesFilesInSubFoldersButSeesHiddenOnes)
{
    TempFolder jpg;
    TempFolder raw;
    jpg.write(QStringLiteral("x.jpg"));
    raw.write(QStringLiteral("deeper/y.CR2"));
    raw.write(QStringLiteral(".z.CR2"));
    raw.makeFolder(QStringLiteral("folder.CR2"));

    const AnalysisResults results = PairingAnalyzer::analyze(jpg.path(), raw.path());

    EXPECT_EQ(namesOf(results.rawFiles), QStringList{QStringLiteral(".z.CR2")});
}

TEST(PairingAnalyzer, TakesTheStemUpToTheLastDotOnly)
{
    TempFolder jpg;
    TempFolder raw;
    jpg.write(QStringLiteral("x.y.jpg"));
    raw.write(QStringLiteral("x.y.cr2"));
    raw.write(QStringLiteral("x.cr2"));

    const AnalysisResults results = PairingAnalyzer::analyze(jpg.path(), raw.path());

    EXPECT_EQ(namesOf(results.matchedFiles), QStringList{QStringLiteral("x.y.cr2")});
    EXPECT_EQ(namesOf(results.unmatchedFiles), QStringList{QStringLiteral("x.cr2")});
}

TEST(PairingAnalyzer, OneFolderAsBothMatchesTwinsAndStillOffersOrphans)
{
    TempFolder both;
    for (int i = 0; i < 5; ++i) {
        both.write(QStringLiteral("IMG_%1.JPG").arg(i));
        both.write(QStringLiteral("IMG_%1.CR3").arg(i));
    }
    both.write(QStringLiteral("IMG_9.CR3"));

    const AnalysisResults results = PairingAnalyzer::analyze(both.path(), both.path());

    EXPECT_EQ(results.jpgFiles.size(), 5);
    EXPECT_EQ(results.matchedFiles.size(), 5);
    EXPECT_EQ(namesOf(results.unmatchedFiles), QStringList{QStringLiteral("IMG_9.CR3")});
}

TEST(PairingAnalyzer, AnUnreadableFolderIsLoggedAndCountsAsEmpty)
{
    TempFolder raw;
    raw.write(QStringLiteral("a.CR2"));
    LogCapture log;

    const AnalysisResults results =
        PairingAnalyzer::analyze(raw.filePath(QStringLiteral("missing")), raw.path());

    EXPECT_TRUE(results.jpgFiles.isEmpty());
    EXPECT_EQ(results.unmatchedFiles.size(), 1);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("Error reading directory: ")), 1);
    EXPECT_TRUE(log.contains(QStringLiteral("=== 分析完成 ===")));
}

TEST(PairingAnalyzer, AsksForBothFoldersFirst)
{
    EXPECT_EQ(PairingAnalyzer::problemWithFolders(QString(), QStringLiteral("/x")),
              QStringLiteral("请先选择JPG和RAW文件夹"));
    EXPECT_FALSE(PairingAnalyzer::problemWithFolders(QStringLiteral("/x"), QStringLiteral("/x")));
}

// The hashed match must agree with comparing every RAW against the JPG list in order, first equal stem wins.
TEST(PairingAnalyzer, HashedMatchingAgreesWithTheListScan)
{
    std::mt19937 random(7);
    const QStringList stems{
        QStringLiteral("img_1"),  QStringLiteral("IMG_1"), QStringLiteral("a.b"),
        QStringLiteral("A"),      QStringLiteral("Ärger"), QStringLiteral("ärger"),
        QStringLiteral("x"),      QStringLiteral("x.y"),   QString::fromUtf8("\u212Aelvin"),
        QStringLiteral("KELVIN"), QString::fromUtf8("İ"),  QStringLiteral("i")};
    const QStringList jpgSuffixes{QStringLiteral(".jpg"), QStringLiteral(".JPEG")};
    const QStringList rawSuffixes{QStringLiteral(".CR2"), QStringLiteral(".nef"), QStringLiteral(".y.dng")};
    for (int round = 0; round < 200; ++round) {
        QStringList jpgs;
        QStringList raws;
        for (int i = 0; i < 6; ++i) {
            jpgs.append(stems.at(random() % stems.size()) + jpgSuffixes.at(random() % jpgSuffixes.size()));
            raws.append(stems.at(random() % stems.size()) + rawSuffixes.at(random() % rawSuffixes.size()));
        }
        int matchedJpgs = 0;
        const std::vector<bool> matched = PairingAnalyzer::matchRawNames(jpgs, raws, &matchedJpgs);
        const auto hasTwin = [](const QString& name, const QStringList& others) {
            return std::any_of(others.begin(), others.end(), [&](const QString& other) {
                return PairingFileTypes::stem(name).toLower() == PairingFileTypes::stem(other).toLower();
            });
        };
        const int expectedJpgs =
            int(std::count_if(jpgs.begin(), jpgs.end(), [&](const QString& j) { return hasTwin(j, raws); }));
        for (qsizetype r = 0; r < raws.size(); ++r)
            EXPECT_EQ(matched[size_t(r)], hasTwin(raws.at(r), jpgs)) << raws.at(r).toStdString();
        EXPECT_EQ(matchedJpgs, expectedJpgs);
    }
}

TEST(PairingAnalyzer, ALinkCountsAsTheFileItPointsToAndADanglingOneIsSkipped)
{
    TempFolder raw;
    const QString target = raw.write(QStringLiteral("elsewhere/real.data"), "12345");
    ASSERT_TRUE(QFile::link(target, raw.filePath(QStringLiteral("linked.CR2"))));
    ASSERT_TRUE(
        QFile::link(raw.filePath(QStringLiteral("gone")), raw.filePath(QStringLiteral("dangling.CR2"))));

    const AnalysisResults results = PairingAnalyzer::analyze(raw.path(), raw.path());

    EXPECT_EQ(namesOf(results.rawFiles), QStringList{QStringLiteral("linked.CR2")});
    EXPECT_EQ(results.rawTotalSize, 5);
}
