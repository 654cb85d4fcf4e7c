// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli report and histogram as a user runs them: output, exports, exit codes, nothing replaced.
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace lumaro::testing {
namespace {

TEST(ReportCommand, PrintsJsonAndWritesHtmlAndPdf)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("shoot/IMG_1.jpg"), {60, 40});
    folder.writePicture(QStringLiteral("shoot/IMG_2.jpg"), {40, 60});
    folder.writePicture(QStringLiteral("shoot/day2/IMG_3.jpg"), {50, 50});
    const QString html = folder.filePath(QStringLiteral("r.html"));
    const QString pdf = folder.filePath(QStringLiteral("r.pdf"));
    const CliResult result =
        runCli({QStringLiteral("report"), folder.filePath(QStringLiteral("shoot")), QStringLiteral("--deep"),
                QStringLiteral("--json"), QStringLiteral("--html"), html, QStringLiteral("--pdf"), pdf});
    ASSERT_EQ(result.exitCode, 0) << result.errText().toStdString();
    const QJsonObject report = QJsonDocument::fromJson(result.out).object();
    EXPECT_EQ(report.value(QStringLiteral("exposures")).toInt(), 3);
    const QJsonObject orientation = report.value(QStringLiteral("orientation")).toObject();
    EXPECT_EQ(orientation.value(QStringLiteral("landscape")).toInt(), 1);
    EXPECT_EQ(orientation.value(QStringLiteral("portrait")).toInt(), 1);
    EXPECT_EQ(orientation.value(QStringLiteral("square")).toInt(), 1);
    EXPECT_TRUE(folder.read(QStringLiteral("r.html")).contains("<svg "));
    EXPECT_TRUE(folder.read(QStringLiteral("r.pdf")).startsWith("%PDF"));
    // Run again: its own reports are replaced.
    EXPECT_EQ(runCli({QStringLiteral("report"), folder.filePath(QStringLiteral("shoot")),
                      QStringLiteral("--html"), html})
                  .exitCode,
              0);
}

TEST(ReportCommand, BadInputIsRefusedAndNothingIsReplaced)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("shoot/IMG_1.jpg"));
    const QString notes = folder.write(QStringLiteral("notes.html"), "my notes");
    struct Case
    {
        QStringList arguments;
        const char* message;
    };
    const Case cases[] = {
        {{QStringLiteral("report"), folder.filePath(QStringLiteral("missing"))}, "no such folder"},
        {{QStringLiteral("report"), folder.filePath(QStringLiteral("shoot")), QStringLiteral("--html"),
          notes},
         "not replaced"},
        {{QStringLiteral("report"), folder.filePath(QStringLiteral("shoot")), QStringLiteral("--pdf"),
          folder.filePath(QStringLiteral("nowhere/r.pdf"))},
         "no such folder"},
        {{QStringLiteral("histogram"), folder.filePath(QStringLiteral("notes.html"))}, "cannot be decoded"},
        {{QStringLiteral("histogram"), folder.path()}, "is a folder"},
    };
    for (const Case& c : cases) {
        const CliResult result = runCli(c.arguments);
        EXPECT_EQ(result.exitCode, 2) << c.message;
        EXPECT_TRUE(result.errText().contains(QLatin1String(c.message))) << result.errText().toStdString();
    }
    EXPECT_EQ(folder.read(QStringLiteral("notes.html")), QByteArray("my notes"));
}

TEST(ReportCommand, AnUnreadablePictureIsNamedAndExitIsOne)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("shoot/IMG_1.jpg"));
    folder.write(QStringLiteral("shoot/IMG_2.jpg"), "cut short");
    const CliResult result = runCli({QStringLiteral("report"), folder.filePath(QStringLiteral("shoot"))});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("IMG_2.jpg")));
    EXPECT_TRUE(result.outText().contains(QStringLiteral("Exposures: 1")));
}

TEST(HistogramCommand, CountsThePreviewPixels)
{
    TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("white.png"), {40, 30}, Qt::white);
    const CliResult result = runCli({QStringLiteral("histogram"), picture, QStringLiteral("--json")});
    ASSERT_EQ(result.exitCode, 0) << result.errText().toStdString();
    const QJsonObject histogram = QJsonDocument::fromJson(result.out).object();
    EXPECT_EQ(histogram.value(QStringLiteral("pixels")).toInt(), 1200);
    EXPECT_DOUBLE_EQ(histogram.value(QStringLiteral("clippedHighlightsPercent")).toDouble(), 100.0);
    EXPECT_EQ(histogram.value(QStringLiteral("luminance")).toArray().at(255).toInt(), 1200);
}

} // namespace
} // namespace lumaro::testing
