// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli answers `COMMAND --help` (and --help-all, the same text) itself, without Qt, from texts written at
// build time: each must be what the program that runs the command prints, byte for byte, for either. Asked
// of a lone copy of lumaro-cli (no helper beside it), so a hand-over would show as "cannot start".
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include "cli/front/CommandDirectory.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace lumaro::testing;

namespace {

std::vector<std::string> commandNames()
{
    std::vector<std::string> names;
    for (const lumaro::cli::CommandEntry& entry : lumaro::cli::commandDirectory())
        names.emplace_back(entry.name);
    return names;
}

class CommandHelpFrontEnd : public ::testing::TestWithParam<std::string>
{
protected:
    CommandHelpFrontEnd()
    {
        QDir().mkpath(bin.filePath(QStringLiteral("bin")));
        QFile::copy(QStringLiteral(LUMARO_CLI_PATH), lone);
    }

    TempFolder bin;
    const QString lone = bin.filePath(QStringLiteral("bin/lumaro-cli"));
};

} // namespace

TEST_P(CommandHelpFrontEnd, IsWhatTheCommandsOwnProgramPrints)
{
    const QString name = QString::fromStdString(GetParam());
    const QString program = QFileInfo(QStringLiteral(LUMARO_CLI_PATH)).absolutePath() + QLatin1Char('/') +
        QString::fromLatin1(lumaro::cli::findCommandEntry(GetParam())->program);
    const CliResult own = runProgram(program, {name, QStringLiteral("--help")});
    ASSERT_EQ(own.exitCode, 0) << own.errText().toStdString();
    ASSERT_FALSE(own.out.isEmpty());
    const CliResult all = runProgram(program, {name, QStringLiteral("--help-all")});
    EXPECT_EQ(all.exitCode, 0) << all.errText().toStdString();
    EXPECT_EQ(all.out, own.out) << "--help-all";
    for (const QString& ask : {QStringLiteral("--help"), QStringLiteral("-h"), QStringLiteral("--help-all")}) {
        const CliResult front = runProgram(lone, {name, ask});
        EXPECT_EQ(front.exitCode, 0) << front.errText().toStdString();
        EXPECT_EQ(front.out, own.out) << ask.toStdString();
        EXPECT_TRUE(front.err.isEmpty()) << front.errText().toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(EveryCommand, CommandHelpFrontEnd, ::testing::ValuesIn(commandNames()),
                         [](const auto& info) { return info.param; });
