// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli bundle new|add|remove|list|export: "Repertoire" bundles of pictures from any folders.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/FolderArgument.h"

#include "library/RepertoireExporter.h"
#include "library/RepertoireStore.h"
#include "platform/files/FileNameCodec.h"
#include "vision/GroupPrefix.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

namespace {

using library::RepertoireStore;

int listBundles(const CommandLine& line, RepertoireStore& store)
{
    const auto bundles = store.bundles();
    if (!bundles)
        return line.fail(QStringLiteral("cannot read the bundles: ") + store.dbManager().lastError().message,
                         exitUsage);
    QTextStream& out = standardOutput();
    QJsonArray array;
    for (const auto& bundle : *bundles) {
        if (line.json())
            array.append(QJsonObject{{QStringLiteral("name"), bundle.name},
                                     {QStringLiteral("pictures"), bundle.pictureCount}});
        else
            out << escapedForLine(bundle.name) << "\t" << bundle.pictureCount << "\n";
    }
    if (line.json())
        out << QJsonDocument(array).toJson(QJsonDocument::Compact) << "\n";
    out.flush();
    return exitOk;
}

int listItems(const CommandLine& line, RepertoireStore& store, const QString& name)
{
    const auto items = store.items(name);
    if (!items)
        return line.fail(QStringLiteral("no such bundle: ") + name, exitUsage);
    QTextStream& out = standardOutput();
    QJsonArray array;
    for (const auto& item : *items) {
        if (line.json())
            array.append(QJsonObject{{QStringLiteral("path"), item.filePath},
                                     {QStringLiteral("present"), item.isPresent}});
        else
            out << escapedForLine(item.filePath) << (item.isPresent ? "" : "\tmissing") << "\n";
    }
    if (line.json())
        out << QJsonDocument(array).toJson(QJsonDocument::Compact) << "\n";
    out.flush();
    return exitOk;
}

int changeItems(const CommandLine& line, RepertoireStore& store, const QString& name,
                const QStringList& paths, bool adding)
{
    if (!store.bundle(name))
        return line.fail(QStringLiteral("no such bundle: ") + name, exitUsage);
    QStringList accepted;
    int failed = 0;
    for (const QString& path : paths) {
        if (adding && !platform::FileNameCodec::isFile(path)) {
            line.fail(QStringLiteral("no such picture: ") + path, exitPartial);
            ++failed;
            continue;
        }
        accepted << path;
    }
    const auto changed = adding ? store.add(name, accepted) : store.remove(name, accepted);
    if (!changed)
        return line.fail(QStringLiteral("could not save: ") + store.dbManager().lastError().message,
                         exitUsage);
    standardOutput() << (adding ? "added " : "removed ") << *changed << "\n";
    standardOutput().flush();
    return failed == 0 ? exitOk : exitPartial;
}

int exportBundle(const CommandLine& line, RepertoireStore& store, const QString& name)
{
    const QString folder = line.value(QStringLiteral("to"));
    const QString zip = line.value(QStringLiteral("zip"));
    if (folder.isEmpty() == zip.isEmpty())
        return line.usageError(QStringLiteral("export needs either --to FOLDER or --zip FILE"));
    if (!folder.isEmpty()) {
        if (const auto problem = problemWithFolder(folder))
            return line.fail(*problem, exitUsage);
        if (!platform::FileNameCodec::isWritable(folder))
            return line.fail(
                QStringLiteral("a read-only folder: %1; nothing was copied").arg(escapedForLine(folder)),
                exitUsage);
    } else if (platform::FileNameCodec::exists(zip)) {
        return line.fail(QStringLiteral("will not overwrite: ") + zip, exitUsage);
    }
    const auto items = store.items(name);
    if (!items)
        return line.fail(QStringLiteral("no such bundle: ") + name, exitUsage);
    const library::RepertoireExportResult result =
        folder.isEmpty() ? library::RepertoireExporter::toZip(*items, zip)
                         : library::RepertoireExporter::toFolder(*items, folder);
    QTextStream& out = standardOutput();
    if (line.json()) {
        out << QJsonDocument(
                   QJsonObject{{QStringLiteral("written"), QJsonArray::fromStringList(result.written)},
                               {QStringLiteral("missing"), QJsonArray::fromStringList(result.missing)},
                               {QStringLiteral("failed"), QJsonArray::fromStringList(result.failures)}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
    } else {
        for (const QString& path : result.written)
            out << escapedForLine(path) << "\n";
    }
    out.flush();
    for (const QString& path : result.missing)
        line.fail(QStringLiteral("missing, not exported: ") + path, exitPartial);
    for (const QString& failure : result.failures)
        line.fail(failure, exitPartial);
    return result.ok() ? exitOk : exitPartial;
}

} // namespace

int runBundle(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("bundle"),
        QStringLiteral(
            "\"Repertoire\" bundles: named sets of pictures from any folders.\n\n"
            "  new NAME                    make an empty bundle\n"
            "  add NAME PATH...            add pictures (each once)\n"
            "  remove NAME PATH...         take pictures out of the bundle (the files stay)\n"
            "  list [NAME]                 the bundles with their counts, or one bundle's pictures\n"
            "  export NAME --to FOLDER     copy the pictures with tags, times and sidecars; never "
            "overwrites\n"
            "  export NAME --zip FILE      write them into a new zip file"));
    line.addSubcommands({{QStringLiteral("new"), 1, 1},
                         {QStringLiteral("add"), 2, Subcommand::anyNumber},
                         {QStringLiteral("remove"), 2, Subcommand::anyNumber},
                         {QStringLiteral("list"), 0, 1},
                         {QStringLiteral("export"), 1, 1}});
    line.addJsonOption();
    line.addOption(
        {QStringLiteral("to"), QStringLiteral("export: the folder to copy into."), QStringLiteral("FOLDER")});
    line.addOption(
        {QStringLiteral("zip"), QStringLiteral("export: the zip file to write."), QStringLiteral("FILE")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto call = line.subcommand();
    if (!call)
        return exitUsage;
    const QString& subcommand = call->name;
    const QStringList& rest = call->arguments;

    RepertoireStore store(&vision::GroupPrefix::stripped);
    if (!store.open())
        return line.fail(QStringLiteral("cannot open the bundles database %1: %2")
                             .arg(store.dbManager().defaultPath(), store.dbManager().lastError().message),
                         exitUsage);
    if (subcommand == QLatin1String("list"))
        return rest.isEmpty() ? listBundles(line, store) : listItems(line, store, rest.at(0));
    if (subcommand == QLatin1String("new")) {
        if (const auto refusal = store.create(rest.at(0)))
            return line.fail(*refusal, exitUsage);
        return exitOk;
    }
    if (subcommand == QLatin1String("export"))
        return exportBundle(line, store, rest.at(0));
    return changeItems(line, store, rest.at(0), rest.mid(1), subcommand == QLatin1String("add"));
}

} // namespace lumaro::cli
