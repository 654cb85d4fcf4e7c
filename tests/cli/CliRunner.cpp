// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRunner.h"

#include <QProcess>

#include <unistd.h>

namespace lumaro::testing {

CliResult runCli(const QStringList& arguments)
{
    QProcess process;
    process.setProgram(QStringLiteral(LUMARO_CLI_PATH));
    process.setArguments(arguments);
    process.start();
    CliResult result;
    if (!process.waitForFinished(120'000))
        return result;
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

bool runningAsRoot()
{
    return ::geteuid() == 0;
}

} // namespace lumaro::testing
