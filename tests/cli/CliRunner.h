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
// Runs one of the programs behind it (lumaro-cli-light, -exif, -heavy) directly, in `workingFolder` when
// one is given.
CliResult runProgram(const QString& program, const QStringList& arguments, const QString& workingFolder = {});
// Runs lumaro-cli and lumaro-cli-light on the same arguments and fails the test unless both exit alike and
// print the same bytes: what lumaro-cli answers itself must read as lumaro-cli-light's answer. Returns
// lumaro-cli's result.
CliResult runFrontAndLight(const QStringList& arguments);
// Fails the test unless a lone copy of lumaro-cli or a helper (no program beside it) handed the command over
// before printing anything: it could not start `helper`, and says so.
void expectHandedOver(const CliResult& front, const QString& helper = QStringLiteral("lumaro-cli-light"));

bool runningAsRoot();

} // namespace lumaro::testing
