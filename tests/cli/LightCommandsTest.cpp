// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli loads only what its light commands call: every decoder or analysis library on its list of needed
// libraries would cost each `list`, `trash`, `tags` and `fav` its loading time, tens of milliseconds.
#include "tests/cli/CliRunner.h"

#include <QProcess>
#include <QRegularExpression>

#include <gtest/gtest.h>

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

TEST(LightCommands, LumaroCliLoadsNoDecoderOrAnalysisLibrary)
{
    const QStringList needed = neededLibraries(QStringLiteral(LUMARO_CLI_PATH));
    ASSERT_TRUE(needed.contains(QStringLiteral("libQt6Core.so.6")))
        << "readelf gave: " << needed.join(QLatin1Char(' ')).toStdString();
    for (const char* heavy : {"libQt6Gui", "libopencv", "libtesseract", "libleptonica", "libheif", "libraw",
                              "libexiv2", "libturbojpeg", "libjpeg", "libQt6DBus", "libQt6Network"}) {
        for (const QString& library : needed)
            EXPECT_FALSE(library.startsWith(QLatin1String(heavy))) << library.toStdString();
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
