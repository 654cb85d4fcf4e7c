// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli list FOLDER: the folder's pictures, one name per line, in the order the app browses them.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "browse/state/FileSystemService.h"
#include "platform/files/FileNameCodec.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

namespace lumaro::cli {

int runList(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("list"), QStringLiteral("Print the picture files of FOLDER in browsing order."));
    line.addPositional(QStringLiteral("FOLDER"), QStringLiteral("The folder to list."));
    line.addJsonOption();
    line.addOption({{QStringLiteral("0"), QStringLiteral("null")},
                    QStringLiteral("End each name with a NUL byte instead of a newline, unescaped.")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto checked = line.folderArgument(QStringLiteral("list takes one folder"));
    if (!checked)
        return exitUsage;
    const QString folder = *checked;

    const QStringList names = browse::FileSystemService::shared().loadImageFileNames(folder);

    QTextStream& out = standardOutput();
    if (line.json()) {
        out << QJsonDocument(QJsonArray::fromStringList(names)).toJson(QJsonDocument::Compact) << "\n";
    } else if (line.isSet(QStringLiteral("null"))) {
        // The names' own bytes, also those that are not UTF-8, as find -print0 gives them.
        out.flush();
        for (const QString& name : names) {
            const QByteArray bytes = platform::FileNameCodec::encode(name);
            std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
            std::fputc(0, stdout);
        }
        std::fflush(stdout);
    } else {
        for (const QString& name : names)
            out << escapedForLine(name) << "\n";
    }
    out.flush();
    return exitOk;
}

} // namespace lumaro::cli
