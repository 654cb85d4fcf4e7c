// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli info FILE… [--json]: the shooting data the window's overlay shows, from the picture's headers.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "browse/info/ShootingInfo.h"
#include "platform/XattrTagStore.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace lumaro::cli {

int runInfo(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("info"),
        QStringLiteral("Print each picture's shooting data: camera, lens, focal length (35 mm "
                       "equivalent), aperture, shutter, ISO, exposure compensation, flash, time, "
                       "pixels, file size, colour tags and rating."));
    line.addPositional(QStringLiteral("FILE"), QStringLiteral("The pictures."), QStringLiteral("FILE..."));
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto files = line.positional(1);
    if (!files)
        return exitUsage;

    QTextStream& out = standardOutput();
    QJsonArray all;
    int failed = 0;
    for (const QString& file : *files) {
        const browse::ShootingInfo info = browse::ShootingInfo::read(file, platform::XattrTagStore::shared());
        if (!info.readable) {
            ++failed;
            standardError() << "lumaro-cli info: " << escapedForLine(file) << ": " << info.error << "\n";
        }
        if (line.json()) {
            all.append(info.toJson());
            continue;
        }
        if (files->size() > 1)
            out << escapedForLine(file) << "\n";
        for (const browse::ShootingInfo::Fact& fact : info.facts())
            out << (files->size() > 1 ? "  " : "") << fact.key << ": " << escapedForLine(fact.value) << "\n";
    }
    if (line.json())
        out << QJsonDocument(all).toJson(QJsonDocument::Compact) << "\n";
    out.flush();
    standardError().flush();
    if (failed == files->size())
        return exitUsage;
    return failed > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
