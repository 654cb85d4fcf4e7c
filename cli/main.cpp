// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli COMMAND [options]: Lumaro's batch tools, without a window.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include <QCoreApplication>

using namespace lumaro::cli;

namespace {

void printOverview()
{
    QTextStream& out = standardOutput();
    out << "Usage: lumaro-cli COMMAND [options]\n\nLumaro's batch tools for picture folders.\n\nCommands:\n";
    for (const Command& command : commands())
        out << "  " << command.name.leftJustified(10) << command.summary << "\n";
    out << "\nRun 'lumaro-cli COMMAND --help' for a command's options.\n"
           "Exit codes: 0 all went well, 1 some items failed, 2 bad usage or bad input.\n";
    out.flush();
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumaro-cli"));
    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty()) {
        printOverview();
        return exitUsage;
    }
    const QString name = arguments.takeFirst();
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help")) {
        printOverview();
        return exitOk;
    }
    for (const Command& command : commands()) {
        if (command.name == name)
            return command.run(arguments);
    }
    standardError() << "lumaro-cli: unknown command '" << name << "'. Run 'lumaro-cli --help' for the list.\n";
    return exitUsage;
}
