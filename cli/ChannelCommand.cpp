// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli channel add|list|remove|rename|move: the window's channels (named folder shortcuts).
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/FolderArgument.h"

#include "library/ChannelLocator.h"
#include "library/ChannelStore.h"
#include "platform/QSettingsStore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

namespace {

using library::ChannelStore;

int list(const CommandLine& line, const ChannelStore& store)
{
    library::ChannelLocator locator;
    QJsonArray array;
    QTextStream& out = standardOutput();
    for (const library::Channel& channel : store.channels()) {
        const library::ChannelPlace place = locator.locate(channel);
        const QString status = library::ChannelLocator::statusName(place.status);
        if (line.json()) {
            array.append(QJsonObject{{QStringLiteral("name"), channel.name},
                                     {QStringLiteral("path"), place.path},
                                     {QStringLiteral("status"), status},
                                     {QStringLiteral("reason"), place.reason},
                                     {QStringLiteral("card"), channel.volumeLabel}});
            continue;
        }
        out << escapedForLine(channel.name) << "\t" << escapedForLine(place.path) << "\t" << status;
        if (!place.isAvailable())
            out << "\t" << place.reason;
        out << "\n";
    }
    if (line.json())
        out << QJsonDocument(array).toJson(QJsonDocument::Compact) << "\n";
    out.flush();
    return exitOk;
}

// The channel a user named by its name, folder or 1-based position; -1 when none.
int channelIndex(const ChannelStore& store, const QString& word)
{
    bool isNumber = false;
    const int position = word.toInt(&isNumber);
    if (isNumber && store.indexOf(word) < 0)
        return position >= 1 && position <= store.channels().size() ? position - 1 : -1;
    return store.indexOf(word);
}

int edited(const CommandLine& line, const std::optional<QString>& refusal)
{
    return refusal ? line.fail(*refusal, exitUsage) : exitOk;
}

} // namespace

int runChannel(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("channel"),
        QStringLiteral(
            "The window's channels: named shortcuts to folders.\n\n"
            "  add FOLDER [NAME]    add a channel (named after the folder when NAME is left out)\n"
            "  list                 print name, folder and whether it can be opened now\n"
            "  remove CHANNEL       remove a channel (by name, folder or position); the folder stays\n"
            "  rename CHANNEL NAME  give a channel another name\n"
            "  move CHANNEL POS     put a channel at position POS (1 is the top)"));
    line.addSubcommands({{QStringLiteral("add"), 1, 2},
                         {QStringLiteral("list"), 0, 0},
                         {QStringLiteral("remove"), 1, 1},
                         {QStringLiteral("rename"), 2, 2},
                         {QStringLiteral("move"), 2, 2}});
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto call = line.subcommand();
    if (!call)
        return exitUsage;
    const QString& subcommand = call->name;
    const QStringList& rest = call->arguments;

    ChannelStore store(platform::QSettingsStore::shared());
    if (subcommand == QLatin1String("list"))
        return list(line, store);
    if (subcommand == QLatin1String("add")) {
        if (const auto problem = problemWithFolder(rest.at(0)))
            return line.fail(*problem, exitUsage);
        return edited(line, store.add(rest.at(0), rest.value(1)));
    }
    const int index = channelIndex(store, rest.at(0));
    if (index < 0)
        return line.fail(QStringLiteral("no such channel: ") + rest.at(0), exitUsage);
    if (subcommand == QLatin1String("remove"))
        return edited(line, store.remove(index));
    if (subcommand == QLatin1String("rename"))
        return edited(line, store.rename(index, rest.at(1)));
    bool isNumber = false;
    const int position = rest.at(1).toInt(&isNumber);
    if (!isNumber || position < 1 || position > store.channels().size())
        return line.usageError(
            QStringLiteral("POS must be a position from 1 to %1").arg(store.channels().size()));
    return edited(line, store.move(index, position - 1));
}

} // namespace lumaro::cli
