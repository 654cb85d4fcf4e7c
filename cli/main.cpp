// SPDX-License-Identifier: GPL-3.0-or-later
// The programs behind lumaro-cli's front end (cli/front/FrontMain.cpp), built three times from this file:
// `lumaro-cli-light` runs the light commands itself and hands the others to `lumaro-cli-exif` or
// `lumaro-cli-heavy` (see cli/CommandTable.h); each also runs when started directly.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/front/CommandDirectory.h"
#include "cli/front/HelperHandOver.h"

#include "platform/files/FileNameCodec.h"
#ifdef LUMARO_CLI_HEAVY_SIDE
#include "platform/process/HeapMemory.h"
#endif

#include <QCoreApplication>
#ifdef LUMARO_CLI_HEAVY_SIDE
#include <QGuiApplication>
#endif

#include <memory>

using namespace lumaro::cli;
using lumaro::platform::FileNameCodec;

namespace {

void printOverview()
{
    QTextStream& out = standardOutput();
    out << QString::fromStdString(commandOverview());
    out.flush();
}

const Command* findCommand(const QString& name)
{
    for (const Command& command : commands()) {
        if (command.name == name)
            return &command;
    }
    return nullptr;
}

int handOver(const char* helper, int argc, char* argv[])
{
    standardOutput().flush();
    standardError().flush();
    return handOverToHelper(helper, LUMARO_CLI_HELPER_FROM_BIN, argc, argv);
}

// lumaro-cli-light makes no application at all: none of its commands runs an event loop, and the
// application's start (its event dispatcher, the C library's locale files) was a tenth of a `trash` or `fav`.
// The other two make a core application; in lumaro-cli-heavy a command that paints gets a GUI one, on the
// offscreen platform, since the command line never shows a window.
std::unique_ptr<QCoreApplication> makeApplication(const Command* command, int& argc, char* argv[])
{
#if defined(LUMARO_CLI_HEAVY_SIDE)
    if (command && command->paints) {
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        return std::make_unique<QGuiApplication>(argc, argv);
    }
    return std::make_unique<QCoreApplication>(argc, argv);
#elif defined(LUMARO_CLI_EXIF_SIDE)
    Q_UNUSED(command);
    return std::make_unique<QCoreApplication>(argc, argv);
#else
    Q_UNUSED(command);
    Q_UNUSED(argc);
    Q_UNUSED(argv);
    return nullptr;
#endif
}

} // namespace

int main(int argc, char* argv[])
{
#ifdef LUMARO_CLI_HEAVY_SIDE
    // The heavy commands decode and analyse on several threads at once (their workers and the network
    // libraries' pools), each of which got a heap of its own that kept its own high-water mark: one heap for
    // the whole process held the peak of `index` on two processors about 90 MB lower at the same speed.
    lumaro::platform::limitHeapArenas(1);
#endif
    // Decoded here rather than by Qt, which turns a file name that is not UTF-8 into U+FFFD.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << FileNameCodec::decode(QByteArray(argv[i]));
    const Command* command = arguments.isEmpty() ? nullptr : findCommand(arguments.constFirst());
    if (command && !command->run)
        return handOver(command->helper, argc, argv);

    const std::unique_ptr<QCoreApplication> application = makeApplication(command, argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("lumaro-cli"));
    if (arguments.isEmpty()) {
        printOverview();
        return exitUsage;
    }
    const QString name = arguments.takeFirst();
    if (command) {
        const int code = command->run(arguments);
        return code == handOverToExif ? handOver("lumaro-cli-exif", argc, argv) : code;
    }
    if (name == QLatin1String("--help") || name == QLatin1String("-h") || name == QLatin1String("help")) {
        printOverview();
        return exitOk;
    }
    standardError() << "lumaro-cli: unknown command '" << name
                    << "'. Run 'lumaro-cli --help' for the list.\n";
    return exitUsage;
}
