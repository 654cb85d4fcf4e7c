// SPDX-License-Identifier: GPL-3.0-or-later
// rclone's log as it comes off its standard error, and the JSON it prints for `about` and `lsjson`.
#include "platform/cloud/RcloneLogReader.h"

#include "platform/cloud/Rclone.h"

#include <gtest/gtest.h>

using lumaro::platform::Rclone;
using lumaro::platform::RcloneLogReader;
using lumaro::platform::RcloneProgress;

namespace {

// Lines as rclone 1.60 writes them with --use-json-log, a plain line from before the log is set up first.
const QByteArray kLog = QByteArrayLiteral(
    "2024/06/21 10:00:00 NOTICE: Config file not found\n"
    "{\"level\":\"info\",\"msg\":\"Copied (new)\",\"object\":\"a.jpg\",\"source\":\"operations/copy.go:1\"}\n"
    "{\"level\":\"error\",\"msg\":\"Failed to copy: 403 Forbidden \",\"object\":\"b.jpg\"}\n"
    "{\"level\":\"notice\",\"msg\":\"\\nTransferred: 1 / 2\",\"stats\":{\"bytes\":2048,\"totalBytes\":4096,"
    "\"transfers\":1,\"errors\":1,\"elapsedTime\":1.2}}\n"
    "{\"level\":\"critical\",\"msg\":\"quota exceeded\"}\n");

TEST(RcloneLogReader, CollectsErrorsInOrderAndTheLastStatistics)
{
    QList<qint64> reported;
    RcloneLogReader log([&](const RcloneProgress& progress) { reported << progress.bytes; });
    log.feed(kLog);
    log.finish();
    EXPECT_EQ(log.errors(), (QStringList{QStringLiteral("b.jpg: Failed to copy: 403 Forbidden"),
                                         QStringLiteral("quota exceeded")}));
    EXPECT_EQ(reported, QList<qint64>{2048});
    EXPECT_EQ(log.last().totalBytes, 4096);
    EXPECT_EQ(log.last().transfers, 1);
    EXPECT_EQ(log.last().errors, 1);
    EXPECT_EQ(log.lastPlainLine(), QStringLiteral("2024/06/21 10:00:00 NOTICE: Config file not found"));
}

TEST(RcloneLogReader, ReadsTheSameWhateverPiecesTheLogArrivesIn)
{
    RcloneLogReader whole;
    whole.feed(kLog);
    whole.finish();
    for (const qsizetype piece : {1, 7, 64}) {
        RcloneLogReader cut;
        for (qsizetype at = 0; at < kLog.size(); at += piece)
            cut.feed(kLog.mid(at, piece));
        cut.finish();
        EXPECT_EQ(cut.errors(), whole.errors()) << piece;
        EXPECT_EQ(cut.last().bytes, whole.last().bytes) << piece;
        EXPECT_EQ(cut.lastPlainLine(), whole.lastPlainLine()) << piece;
    }
}

TEST(RcloneLogReader, ReadsALastLineWithoutNewlineOnlyAtTheEnd)
{
    RcloneLogReader log;
    log.feed(QByteArrayLiteral("{\"level\":\"fatal\",\"msg\":\"directory not found\"}"));
    EXPECT_TRUE(log.errors().isEmpty());
    log.finish();
    EXPECT_EQ(log.errors(), QStringList{QStringLiteral("directory not found")});
}

TEST(RcloneLogReader, FiguresThatAreNoCountReadAsZero)
{
    // 1e300 used to be cast to qint64: undefined behaviour, a negative byte count on x86.
    RcloneLogReader log;
    log.feed(QByteArrayLiteral("{\"stats\":{\"bytes\":1e300,\"totalBytes\":-5,\"transfers\":1e10,"
                               "\"errors\":2.5}}\n"));
    EXPECT_EQ(log.last().bytes, 0);
    EXPECT_EQ(log.last().totalBytes, 0);
    EXPECT_EQ(log.last().transfers, 0);
    EXPECT_EQ(log.last().errors, 0);
}

TEST(RcloneOutput, FreeBytesOnlyWhenTheyAreACount)
{
    const struct
    {
        const char* about;
        std::optional<qint64> free;
    } cases[] = {
        {R"({"total":100,"used":40,"free":60})", 60}, {R"({"total":100})", std::nullopt},
        {R"({"free":1e300})", std::nullopt},          {R"({"free":-1})", std::nullopt},
        {R"({"free":"60"})", std::nullopt},           {"not json", std::nullopt},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Rclone::freeBytesIn(QByteArray(c.about)), c.free) << c.about;
}

TEST(RcloneOutput, ListedFilesWithoutAWholeSizeAreLeftOut)
{
    const QHash<QString, qint64> sizes = Rclone::fileSizesIn(QByteArrayLiteral(
        R"([{"Path":"a.jpg","Name":"a.jpg","Size":1024,"IsDir":false},)"
        R"({"Path":"sub/b.jpg","Size":0},{"Path":"huge.jpg","Size":1e300},{"Path":"minus.jpg","Size":-1}])"));
    EXPECT_EQ(sizes,
              (QHash<QString, qint64>{{QStringLiteral("a.jpg"), 1024}, {QStringLiteral("sub/b.jpg"), 0}}));
}

} // namespace
