// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/RawPicker.h"
#include "cards/PairingAnalyzer.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"
#include "tests/support/XdgTags.h"

#include <gtest/gtest.h>

using namespace lumaro::cards;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

// Picks the RAW files of `shoot`/raw that have a JPG in `shoot`/jpg.
PickResult pickMatched(const TempFolder& shoot)
{
    const QString raw = shoot.filePath(QStringLiteral("raw"));
    return RawPicker::pick(PairingAnalyzer::analyze(shoot.filePath(QStringLiteral("jpg")), raw).matchedFiles,
                           raw);
}

} // namespace

TEST(RawPicker, PutsRawPickBesideTheRawFolder)
{
    EXPECT_EQ(RawPicker::pickFolderFor(QStringLiteral("/shoot/raw")), QStringLiteral("/shoot/RAW_PICK"));
    EXPECT_EQ(RawPicker::pickFolderFor(QStringLiteral("/shoot/raw/")), QStringLiteral("/shoot/RAW_PICK"));
    EXPECT_EQ(RawPicker::pickFolderFor(QStringLiteral("/raw")), QStringLiteral("/RAW_PICK"));
}

TEST(RawPicker, CopiesTheMatchedRawFilesWithTheirTags)
{
    TempFolder shoot;
    shoot.write(QStringLiteral("jpg/a.jpg"));
    shoot.write(QStringLiteral("jpg/b.JPG"));
    const QString tagged = shoot.write(QStringLiteral("raw/a.CR2"), "A-raw");
    shoot.write(QStringLiteral("raw/b.cr2"), "B-raw");
    shoot.write(QStringLiteral("raw/c.CR2"), "C-raw");
    const bool tagsWork = lumaro::testing::setXdgTags(tagged, "red");

    const PickResult result = pickMatched(shoot);

    EXPECT_EQ(result.pickFolder, shoot.filePath(QStringLiteral("RAW_PICK")));
    EXPECT_EQ(result.copiedCount, 2);
    EXPECT_EQ(shoot.entries(QStringLiteral("RAW_PICK")),
              (QStringList{QStringLiteral("a.CR2"), QStringLiteral("b.cr2")}));
    EXPECT_EQ(shoot.read(QStringLiteral("RAW_PICK/a.CR2")), QByteArray("A-raw"));
    EXPECT_TRUE(shoot.exists(QStringLiteral("raw/a.CR2"))) << "a pick copies, it never moves";
    if (tagsWork) {
        EXPECT_EQ(lumaro::testing::xdgTags(shoot.filePath(QStringLiteral("RAW_PICK/a.CR2"))),
                  QByteArray("red"));
    }
}

TEST(RawPicker, PickingTwiceReplacesSameNamedFilesAndKeepsOthers)
{
    TempFolder shoot;
    shoot.write(QStringLiteral("jpg/a.jpg"));
    shoot.write(QStringLiteral("raw/a.CR2"), "new");
    shoot.write(QStringLiteral("RAW_PICK/a.CR2"), "old");
    shoot.write(QStringLiteral("RAW_PICK/keep.CR2"), "keep");

    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(pickMatched(shoot).copiedCount, 1);

    EXPECT_EQ(shoot.entries(QStringLiteral("RAW_PICK")),
              (QStringList{QStringLiteral("a.CR2"), QStringLiteral("keep.CR2")}));
    EXPECT_EQ(shoot.read(QStringLiteral("RAW_PICK/a.CR2")), QByteArray("new"));
    EXPECT_EQ(shoot.read(QStringLiteral("RAW_PICK/keep.CR2")), QByteArray("keep"));
}

TEST(RawPicker, AFileNamedRawPickStopsThePickWithoutTouchingIt)
{
    TempFolder shoot;
    shoot.write(QStringLiteral("raw/a.CR2"));
    shoot.write(QStringLiteral("RAW_PICK"), "a plain file");
    LogCapture log;

    const PickResult result =
        RawPicker::pick({shoot.filePath(QStringLiteral("raw/a.CR2"))}, shoot.filePath(QStringLiteral("raw")));

    EXPECT_TRUE(result.pickFolder.isEmpty());
    EXPECT_EQ(result.errorMessage, QStringLiteral("PICK失败，请检查权限"));
    EXPECT_EQ(shoot.read(QStringLiteral("RAW_PICK")), QByteArray("a plain file"));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("Error creating RAW_PICK: ")), 1);
}

TEST(RawPicker, AMissingSourceIsLoggedAndTheRestIsCopied)
{
    TempFolder shoot;
    const QString present = shoot.write(QStringLiteral("raw/b.CR2"), "b");
    LogCapture log;

    const PickResult result = RawPicker::pick({shoot.filePath(QStringLiteral("raw/gone.CR2")), present},
                                              shoot.filePath(QStringLiteral("raw")));

    EXPECT_EQ(result.copiedCount, 1);
    EXPECT_EQ(result.failedCount, 1);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("copy error: ")), 1);
    EXPECT_EQ(shoot.read(QStringLiteral("RAW_PICK/b.CR2")), QByteArray("b"));
}

TEST(RawPicker, SidecarsGoWithTheirRawAndAnEditInRawPickIsKept)
{
    TempFolder shoot;
    shoot.write(QStringLiteral("jpg/a.jpg"));
    shoot.write(QStringLiteral("jpg/b.jpg"));
    shoot.write(QStringLiteral("raw/a.CR2"));
    shoot.write(QStringLiteral("raw/a.CR2.xmp"), "a's rating");
    shoot.write(QStringLiteral("raw/b.CR2"));
    shoot.write(QStringLiteral("raw/b.xmp"), "b's rating");
    shoot.write(QStringLiteral("RAW_PICK/b.xmp"), "edited in RAW_PICK");
    const QString rawFolder = shoot.filePath(QStringLiteral("raw"));
    const AnalysisResults results =
        PairingAnalyzer::analyze(shoot.filePath(QStringLiteral("jpg")), rawFolder);
    EXPECT_EQ(results.rawFiles.size(), 2) << "a sidecar is never counted as a RAW file";

    RawPicker::pick(results.matchedFiles, rawFolder);
    EXPECT_EQ(shoot.entries(QStringLiteral("RAW_PICK")),
              (QStringList{QStringLiteral("a.CR2"), QStringLiteral("a.CR2.xmp"), QStringLiteral("b.CR2"),
                           QStringLiteral("b.xmp")}));
    EXPECT_EQ(shoot.read(QStringLiteral("RAW_PICK/a.CR2.xmp")), QByteArray("a's rating"));
    EXPECT_EQ(shoot.read(QStringLiteral("RAW_PICK/b.xmp")), QByteArray("edited in RAW_PICK"));
}
