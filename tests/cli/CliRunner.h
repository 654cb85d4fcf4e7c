// SPDX-License-Identifier: GPL-3.0-or-later
// Runs lumaro-cli as a user would and hands back what it printed and how it exited.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace lumaro::testing {

struct CliResult
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;

    QString outText() const { return QString::fromUtf8(out); }
    QString errText() const { return QString::fromUtf8(err); }
};

// Runs lumaro-cli, the front end every user and script calls.
CliResult runCli(const QStringList& arguments);
// Runs one of the programs behind it (lumaro-cli-light, -exif, -heavy) directly.
CliResult runProgram(const QString& program, const QStringList& arguments);

bool runningAsRoot();

} // namespace lumaro::testing
