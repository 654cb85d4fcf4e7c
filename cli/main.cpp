// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli COMMAND [options]: Lumaro's batch tools, without a window.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "platform/files/FileNameCodec.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <memory>

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

// Most commands need no GUI application and start faster without one; a command that paints gets one, on the
// offscreen platform, since the command line never shows a window.
std::unique_ptr<QCoreApplication> makeApplication(int& argc, char* argv[])
{
    for (const Command& command : commands()) {
        if (command.paints && argc > 1 && command.name == QLatin1String(argv[1])) {
            if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
                qputenv("QT_QPA_PLATFORM", "offscreen");
            return std::make_unique<QGuiApplication>(argc, argv);
        }
    }
    return std::make_unique<QCoreApplication>(argc, argv);
}

} // namespace

int main(int argc, char* argv[])
{
    const std::unique_ptr<QCoreApplication> application = makeApplication(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumaro-cli"));
    // Decoded here rather than by Qt, which turns a file name that is not UTF-8 into U+FFFD.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << lumaro::platform::FileNameCodec::decode(QByteArray(argv[i]));
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
    standardError() << "lumaro-cli: unknown command '" << name
                    << "'. Run 'lumaro-cli --help' for the list.\n";
    return exitUsage;
}
