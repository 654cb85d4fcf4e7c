// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli loads no library at all (Qt Core with ICU and GLib costs more than listing 1,000 pictures), and
// lumaro-cli-light only what its light commands call: every decoder or analysis library on its list of needed
// libraries would cost each `trash`, `tags` and `fav` its loading time, tens of milliseconds.
#include "tests/cli/CliRunner.h"

#include "platform/XattrTagStore.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace {

QStringList neededLibraries(const QString& program)
{
    QProcess readelf;
    readelf.start(QStringLiteral("readelf"), {QStringLiteral("--dynamic"), program});
    if (!readelf.waitForFinished(30'000))
        return {};
    QStringList names;
    static const QRegularExpression needed(QStringLiteral(R"(\(NEEDED\)\s+Shared library: \[([^\]]+)\])"));
    auto it = needed.globalMatch(QString::fromUtf8(readelf.readAllStandardOutput()));
    while (it.hasNext())
        names << it.next().captured(1);
    return names;
}

} // namespace

TEST(LightCommands, LumaroCliLoadsNeitherQtNorSqlite)
{
    for (const QString& library : neededLibraries(QStringLiteral(LUMARO_CLI_PATH))) {
        for (const char* slow : {"libQt6", "libicu", "libglib", "libsqlite3"})
            EXPECT_FALSE(library.startsWith(QLatin1String(slow))) << library.toStdString();
    }
}

TEST(LightCommands, LumaroCliLightLoadsNoDecoderOrAnalysisLibrary)
{
    const QStringList needed = neededLibraries(QStringLiteral(LUMARO_CLI_LIGHT_PATH));
    ASSERT_TRUE(needed.contains(QStringLiteral("libQt6Core.so.6")))
        << "readelf gave: " << needed.join(QLatin1Char(' ')).toStdString();
    for (const char* heavy : {"libQt6Gui", "libopencv", "libtesseract", "libleptonica", "libheif", "libraw",
                              "libexiv2", "libturbojpeg", "libjpeg", "libQt6DBus", "libQt6Network"}) {
        for (const QString& library : needed)
            EXPECT_FALSE(library.startsWith(QLatin1String(heavy))) << library.toStdString();
    }
}

// Import and card read EXIF only: their program must not pay for the decoders and analysis libraries, whose
// loading from a cold disk took longer than the copying gap to cp.
TEST(LightCommands, LumaroCliExifLoadsExiv2ButNoDecoderOrAnalysisLibrary)
{
    const QStringList needed = neededLibraries(QStringLiteral(LUMARO_CLI_EXIF_PATH));
    ASSERT_TRUE(needed.contains(QStringLiteral("libexiv2.so.27")))
        << "readelf gave: " << needed.join(QLatin1Char(' ')).toStdString();
    for (const char* heavy : {"libQt6Gui", "libopencv", "libtesseract", "libleptonica", "libheif", "libraw",
                              "libturbojpeg", "libjpeg", "libQt6Network"}) {
        for (const QString& library : needed)
            EXPECT_FALSE(library.startsWith(QLatin1String(heavy))) << library.toStdString();
    }
}

// A tag toggle pays for exiv2 and the C++ library only: Qt Core alone would triple its start.
TEST(LightCommands, LumaroCliXmpLoadsExiv2ButNotQt)
{
    const QStringList needed = neededLibraries(QStringLiteral(LUMARO_CLI_XMP_PATH));
    ASSERT_TRUE(needed.contains(QStringLiteral("libexiv2.so.27")))
        << "readelf gave: " << needed.join(QLatin1Char(' ')).toStdString();
    for (const char* slow : {"libQt6", "libicu", "libglib", "libsqlite3", "libopencv", "libraw", "libheif"}) {
        for (const QString& library : needed)
            EXPECT_FALSE(library.startsWith(QLatin1String(slow))) << library.toStdString();
    }
}

TEST(LightCommands, HeavyCommandIsHandedOverWithItsArgumentsAndExitCode)
{
    const auto result =
        lumaro::testing::runCli({QStringLiteral("thumbs"), QStringLiteral("--no-such-option")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().contains(QLatin1String("no-such-option"))) << result.errText().toStdString();
    EXPECT_TRUE(result.errText().contains(QLatin1String("lumaro-cli thumbs")))
        << result.errText().toStdString();
}

// lumaro-cli and lumaro-cli-light without the exiv2 programs anywhere they look: reading tags must not need them,
// a toggle (which writes the XMP sidecar) must, and must change nothing when none can be started.
TEST(LightCommands, TagsAreReadWithoutTheHelperAndAToggleIsHandedOver)
{
    lumaro::testing::TempFolder space;
    const QString alone = space.filePath(QStringLiteral("bin/lumaro-cli"));
    QDir().mkpath(space.filePath(QStringLiteral("bin")));
    ASSERT_TRUE(QFile::copy(QStringLiteral(LUMARO_CLI_PATH), alone));
    ASSERT_TRUE(QFile::copy(QStringLiteral(LUMARO_CLI_LIGHT_PATH),
                            space.filePath(QStringLiteral("bin/lumaro-cli-light"))));
    const QString picture = space.writePicture(QStringLiteral("IMG_1.jpg"));
    QString error;
    ASSERT_TRUE(lumaro::platform::XattrTagStore::shared().setTags(picture, {QStringLiteral("red")}, &error))
        << error.toStdString();
    const auto run = [&](const QStringList& arguments, const QString& program) {
        QProcess cli;
        cli.start(program, arguments);
        cli.waitForFinished(30'000);
        return std::pair{cli.exitCode(),
                         QString::fromUtf8(cli.readAllStandardOutput() + cli.readAllStandardError())};
    };

    const auto [readCode, read] = run({QStringLiteral("tags"), picture}, alone);
    EXPECT_EQ(readCode, 0) << read.toStdString();
    EXPECT_EQ(read.trimmed(), QStringLiteral("red"));

    // The toggle writes the sidecar with exiv2: lumaro-cli-xmp's when asked of the front end, lumaro-cli-exif's
    // when asked of lumaro-cli-light, and nothing is changed by the program handing it over.
    const std::pair<QString, QString> handOvers[] = {
        {alone, QStringLiteral("lumaro-cli-xmp")},
        {space.filePath(QStringLiteral("bin/lumaro-cli-light")), QStringLiteral("lumaro-cli-exif")}};
    for (const auto& [program, helper] : handOvers) {
        const auto [toggleCode, toggled] =
            run({QStringLiteral("tags"), picture, QStringLiteral("--toggle"), QStringLiteral("blue")}, program);
        EXPECT_EQ(toggleCode, 2) << toggled.toStdString();
        EXPECT_TRUE(toggled.contains(QStringLiteral("cannot start ") + helper)) << toggled.toStdString();
        EXPECT_EQ(lumaro::platform::XattrTagStore::shared().tags(picture, &error),
                  QStringList{QStringLiteral("red")});
        EXPECT_FALSE(space.exists(QStringLiteral("IMG_1.xmp")));
    }
}

// Without lumaro-cli-light, lumaro-cli still answers --help, lists a folder and its favourites, and says what
// is missing for the rest instead of failing silently.
TEST(LightCommands, TheFrontEndAloneListsAndNamesAMissingHelper)
{
    lumaro::testing::TempFolder space;
    const QString alone = space.filePath(QStringLiteral("bin/lumaro-cli"));
    QDir().mkpath(space.filePath(QStringLiteral("bin")));
    ASSERT_TRUE(QFile::copy(QStringLiteral(LUMARO_CLI_PATH), alone));
    const QString folder = space.makeFolder(QStringLiteral("pictures"));
    space.write(QStringLiteral("pictures/IMG_1.jpg"));
    space.write(QStringLiteral("pictures/two\nlines\\.png"));
    const QByteArray raw = QFile::encodeName(folder) + "/caf\xe9.jpg";
    ASSERT_EQ(::close(::open(raw.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644)), 0);

    EXPECT_EQ(lumaro::testing::runProgram(alone, {QStringLiteral("--help")}).exitCode, 0);
    const auto listed =
        lumaro::testing::runProgram(alone, {QStringLiteral("list"), QStringLiteral("-q"), folder});
    EXPECT_EQ(listed.exitCode, 0) << listed.errText().toStdString();
    EXPECT_EQ(listed.outText(), QStringLiteral("IMG_1.jpg\ncaf\\xe9.jpg\ntwo\\nlines\\\\.png\n"));
    const auto favourites =
        lumaro::testing::runProgram(alone, {QStringLiteral("fav"), QStringLiteral("list"), QStringLiteral("--json")});
    EXPECT_EQ(favourites.exitCode, 2);
    EXPECT_TRUE(favourites.errText().contains(QLatin1String("cannot start lumaro-cli-light")))
        << favourites.errText().toStdString();

    // The favourites of a store lumaro-cli-light made are listed without it.
    const QString picture = folder + QStringLiteral("/IMG_1.jpg");
    ASSERT_EQ(lumaro::testing::runCli({QStringLiteral("fav"), QStringLiteral("add"), picture}).exitCode, 0);
    const auto marked =
        lumaro::testing::runProgram(alone, {QStringLiteral("fav"), QStringLiteral("list"), QStringLiteral("-q")});
    EXPECT_EQ(marked.exitCode, 0) << marked.errText().toStdString();
    EXPECT_EQ(marked.outText(), picture + QStringLiteral("\n"));
}
