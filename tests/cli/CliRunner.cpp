// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRunner.h"

#include "platform/files/FileNameCodec.h"

#include <QProcess>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <algorithm>

#include <unistd.h>

namespace lumaro::testing {

CliResult runCli(const QStringList& arguments)
{
    return runProgram(QStringLiteral(LUMARO_CLI_PATH), arguments);
}

CliResult runFrontAndLight(const QStringList& arguments)
{
    const CliResult front = runCli(arguments);
    const CliResult light = runProgram(QStringLiteral(LUMARO_CLI_LIGHT_PATH), arguments);
    EXPECT_EQ(front.exitCode, light.exitCode) << front.errText().toStdString();
    EXPECT_EQ(front.out, light.out);
    EXPECT_EQ(front.err, light.err);
    return front;
}

CliResult runProgram(const QString& program, const QStringList& arguments, const QString& workingFolder)
{
    QProcess process;
    process.setWorkingDirectory(workingFolder);
    process.setProgram(program);
    process.setArguments(arguments);
    // QProcess passes arguments through QFile::encodeName, which loses bytes that are not UTF-8: such
    // arguments go through a file of NUL-ended byte strings that bash hands on unchanged.
    QTemporaryFile bytes;
    if (std::any_of(arguments.cbegin(), arguments.cend(), &platform::FileNameCodec::hasRawBytes)) {
        if (!bytes.open())
            return {};
        bytes.write(platform::FileNameCodec::encode(program) + '\0');
        for (const QString& argument : arguments)
            bytes.write(platform::FileNameCodec::encode(argument) + '\0');
        bytes.flush();
        process.setProgram(QStringLiteral("bash"));
        process.setArguments(
            {QStringLiteral("-c"),
             QStringLiteral("args=(); while IFS= read -r -d '' a; do args+=(\"$a\"); done < \"$1\"; "
                            "exec \"${args[@]}\""),
             QStringLiteral("bash"), bytes.fileName()});
    }
    process.start();
    CliResult result;
    if (!process.waitForFinished(120'000))
        return result;
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

void expectHandedOver(const CliResult& front, const QString& helper)
{
    EXPECT_EQ(front.exitCode, 2);
    EXPECT_TRUE(front.errText().contains(QStringLiteral("cannot start ") + helper))
        << front.errText().toStdString();
    EXPECT_TRUE(front.out.isEmpty());
}

bool runningAsRoot()
{
    return ::geteuid() == 0;
}

} // namespace lumaro::testing
