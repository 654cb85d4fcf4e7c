// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli tags FILE [--toggle COLOUR]: a picture's tags, and one colour switched on or off. Reading runs
// in lumaro-cli itself; a toggle also writes the XMP sidecar (exiv2), so it is handed to lumaro-cli-exif.
#include "cli/TagsCommand.h"

#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "platform/files/FileNameCodec.h"

#include "browse/hotkeys/HotkeyAction.h"
#include "platform/XattrTagStore.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace lumaro::cli {

int runTagsReading(const QStringList& arguments)
{
    return runTagsWith(arguments, {});
}

int runTagsWith(const QStringList& arguments, const SidecarColourWriter& writeSidecar)
{
    CommandLine line(
        QStringLiteral("tags"),
        QStringLiteral("Print the tags of FILE (comma-separated), optionally toggling one colour first."));
    line.addPositional(QStringLiteral("FILE"), QStringLiteral("The picture."));
    line.addOption(
        {QStringLiteral("toggle"),
         QStringLiteral("Add COLOUR when the file lacks it, remove it when it has it: red, yellow, orange, "
                        "green, blue or purple."),
         QStringLiteral("COLOUR")});
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto words = line.positional(1);
    if (!words)
        return exitUsage;
    if (words->size() > 1)
        return line.usageError(QStringLiteral("tags takes one file"));
    const QString file = words->constFirst();
    if (!platform::FileNameCodec::isFile(file))
        return line.fail(QStringLiteral("%1: no such file").arg(escapedForLine(file)), exitUsage);
    const QString color = line.value(QStringLiteral("toggle")).trimmed().toLower();
    if (line.isSet(QStringLiteral("toggle")) && !browse::annotateActionForColor(color))
        return line.usageError(
            QStringLiteral("unknown colour \"%1\" (red, yellow, orange, green, blue, purple)")
                .arg(line.value(QStringLiteral("toggle"))));

    if (!color.isEmpty() && !writeSidecar)
        return handOverToExif;

    platform::FileTagStore& store = platform::XattrTagStore::shared();
    QString error;
    auto tags = store.tags(file, &error);
    if (!tags)
        return line.fail(QStringLiteral("%1: cannot read tags: %2").arg(escapedForLine(file), error),
                         exitPartial);
    if (!color.isEmpty()) {
        if (tags->contains(color))
            tags->removeAll(color);
        else
            tags->append(color);
        if (!store.setTags(file, *tags, &error))
            return line.fail(QStringLiteral("%1: cannot write tags: %2").arg(escapedForLine(file), error),
                             exitPartial);
        // The editors read colours from the XMP sidecar, not from the file's tags.
        if (!writeSidecar(file, *tags, &error))
            return line.fail(
                QStringLiteral("%1: tags written, sidecar not: %2").arg(escapedForLine(file), error),
                exitPartial);
    }
    QTextStream& out = standardOutput();
    if (line.json())
        out << QJsonDocument(QJsonArray::fromStringList(*tags)).toJson(QJsonDocument::Compact) << "\n";
    else
        out << escapedForLine(tags->join(QLatin1Char(','))) << "\n";
    out.flush();
    return exitOk;
}

} // namespace lumaro::cli
