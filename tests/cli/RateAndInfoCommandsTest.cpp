// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli rate and info: stars, picks and rejects into sidecars that exiv2 reads back, shooting data read
// from headers exiv2 wrote; bad input changes nothing.
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace lumaro::testing;

namespace {

QString exiv2Value(const QString& file, const QString& key)
{
    QProcess exiv2;
    exiv2.start(QStringLiteral("exiv2"), {QStringLiteral("-K"), key, QStringLiteral("-Pv"), file});
    exiv2.waitForFinished();
    return QString::fromUtf8(exiv2.readAllStandardOutput()).trimmed();
}

} // namespace

TEST(CliRate, WritesStarsPicksAndRejectsThatExiv2Reads)
{
    if (QStandardPaths::findExecutable(QStringLiteral("exiv2")).isEmpty())
        GTEST_SKIP() << "the exiv2 command is not installed";
    TempFolder folder;
    const QString a = folder.writePicture(QStringLiteral("a.jpg"));
    const QString b = folder.write(QStringLiteral("b.CR2"), QByteArrayLiteral("raw"));
    const CliResult stars = runCli(
        {QStringLiteral("rate"), QStringLiteral("-q"), QStringLiteral("--stars"), QStringLiteral("3"), a, b});
    ASSERT_EQ(stars.exitCode, 0) << stars.errText().toStdString();
    EXPECT_EQ(stars.outText(), a + QStringLiteral(": 3 stars\n") + b + QStringLiteral(": 3 stars\n"));
    EXPECT_EQ(exiv2Value(folder.filePath(QStringLiteral("b.CR2.xmp")), QStringLiteral("Xmp.xmp.Rating")),
              QStringLiteral("3"));

    EXPECT_EQ(runCli({QStringLiteral("rate"), QStringLiteral("-q"), QStringLiteral("--reject"), a}).exitCode,
              0);
    EXPECT_EQ(exiv2Value(folder.filePath(QStringLiteral("a.jpg.xmp")), QStringLiteral("Xmp.xmp.Rating")),
              QStringLiteral("-1"));
    const CliResult read = runCli({QStringLiteral("rate"), QStringLiteral("--json"), a});
    EXPECT_EQ(read.outText().trimmed(),
              QStringLiteral(R"([{"file":"%1","flag":"rejected","rating":-1,"stars":0}])").arg(a));
}

TEST(CliRate, BadInputChangesNothing)
{
    TempFolder folder;
    const QString a = folder.writePicture(QStringLiteral("a.jpg"));
    const QString broken = folder.writePicture(QStringLiteral("c.jpg"));
    folder.write(QStringLiteral("c.jpg.xmp"), QByteArrayLiteral("not xmp"));
    struct Case
    {
        QStringList arguments;
        int exitCode;
    };
    const Case cases[] = {
        {{QStringLiteral("--stars"), QStringLiteral("6"), a}, 2},
        {{QStringLiteral("--stars"), QStringLiteral("2"), QStringLiteral("--pick"), a}, 2},
        {{QStringLiteral("--pick"), a, folder.filePath(QStringLiteral("gone.jpg"))}, 2},
        {{QStringLiteral("--pick"), folder.filePath(QStringLiteral("c.jpg.xmp"))}, 2},
        {{QStringLiteral("--pick"), broken}, 1},
    };
    for (const Case& c : cases) {
        const CliResult result =
            runCli(QStringList{QStringLiteral("rate"), QStringLiteral("-q")} + c.arguments);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.arguments.join(' ').toStdString();
        EXPECT_FALSE(result.errText().isEmpty());
    }
    EXPECT_EQ(folder.entries(),
              (QStringList{QStringLiteral("a.jpg"), QStringLiteral("c.jpg"), QStringLiteral("c.jpg.xmp")}));
    EXPECT_EQ(folder.read(QStringLiteral("c.jpg.xmp")), QByteArrayLiteral("not xmp"));
}

TEST(CliInfo, PrintsTheShootingDataAndSaysWhatCannotBeRead)
{
    if (QStandardPaths::findExecutable(QStringLiteral("exiv2")).isEmpty())
        GTEST_SKIP() << "the exiv2 command is not installed";
    TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("shot.jpg"), QSize(300, 200));
    QProcess::execute(QStringLiteral("exiv2"),
                      {QStringLiteral("-M"), QStringLiteral("set Exif.Image.Make Canon"),
                       QStringLiteral("-M"), QStringLiteral("set Exif.Image.Model Canon EOS R6"),
                       QStringLiteral("-M"), QStringLiteral("set Exif.Photo.ExposureTime 1/250"),
                       QStringLiteral("-M"), QStringLiteral("set Exif.Photo.FNumber 28/10"),
                       QStringLiteral("-M"), QStringLiteral("set Exif.Photo.ISOSpeedRatings 400"),
                       QStringLiteral("-M"), QStringLiteral("set Exif.Photo.ExposureBiasValue -2/3"),
                       QStringLiteral("-M"), QStringLiteral("set Exif.Photo.FocalLength 50/1"),
                       QStringLiteral("-M"), QStringLiteral("set Exif.Photo.FocalLengthIn35mmFilm 80"),
                       picture});
    const CliResult result = runCli({QStringLiteral("info"), QStringLiteral("-q"), picture});
    ASSERT_EQ(result.exitCode, 0) << result.errText().toStdString();
    for (const char* line :
         {"camera: Canon EOS R6", "shutter: 1/250 s", "aperture: f/2.8", "iso: 400",
          "exposureCompensation: -0.7 EV", "focalLength: 50 mm (等效 80 mm)", "pixels: 300 × 200 (0.1 MP)"})
        EXPECT_TRUE(result.outText().contains(QString::fromUtf8(line))) << line << "\n"
                                                                        << result.out.constData();

    const QString notAPicture = folder.write(QStringLiteral("notes.jpg"), QByteArrayLiteral("text"));
    const CliResult partial = runCli({QStringLiteral("info"), QStringLiteral("-q"), QStringLiteral("--json"),
                                      picture, notAPicture, folder.filePath(QStringLiteral("gone.jpg"))});
    EXPECT_EQ(partial.exitCode, 1);
    EXPECT_TRUE(partial.errText().contains(QStringLiteral("gone.jpg: no such file")));
    EXPECT_EQ(QJsonDocument::fromJson(partial.out).array().size(), 3);
    EXPECT_EQ(runCli({QStringLiteral("info"), QStringLiteral("-q"), notAPicture}).exitCode, 2);
}
