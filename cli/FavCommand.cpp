// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli fav add|remove|type TYPE|list|audit: the favourites store from the command line.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "platform/files/FileNameCodec.h"

#include "library/FavourCopier.h"
#include "library/FavourManager.h"
#include "platform/FileCopier.h"
#include "platform/QSettingsStore.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

namespace {

using library::FavourManager;
using library::FavourType;

const QStringList kSubcommands{QStringLiteral("add"), QStringLiteral("remove"), QStringLiteral("type"),
                               QStringLiteral("list"), QStringLiteral("audit")};

QString typeNames()
{
    QStringList names;
    for (const FavourType type : library::allFavourTypes)
        names << library::caseName(type);
    return names.join(QStringLiteral(", ")) + QStringLiteral(", none");
}

// nullopt when `path` names a file that can be marked; otherwise why not. Asked by the name's real bytes, so
// a name that is not UTF-8 can be marked too.
std::optional<QString> problemWithPicture(const QString& path)
{
    const QFileInfo info(path);
    if (!platform::FileNameCodec::exists(path))
        return QStringLiteral("no such file: ") + path;
    if (info.isDir())
        return QStringLiteral("is a folder, not a picture: ") + path;
    return std::nullopt;
}

// Applies `change` to each path; a path that fails is reported and skipped, never the end of the run.
int forEachPath(const CommandLine& line, const QStringList& paths, bool mustExist,
                const std::function<library::FavourResult(const QString&)>& change)
{
    int failed = 0;
    // With the favourites copy on, each mark copies its picture: the disk reads the next one meanwhile.
    const bool copying = mustExist && library::FavourCopier(platform::QSettingsStore::shared()).isEnabled();
    for (qsizetype i = 0; i < paths.size(); ++i) {
        const QString& path = paths.at(i);
        if (copying && i + 1 < paths.size())
            platform::FileCopier::readAheadSoon(paths.at(i + 1));
        if (const auto problem = mustExist ? problemWithPicture(path) : std::nullopt) {
            line.fail(*problem, exitPartial);
            ++failed;
            continue;
        }
        const library::FavourResult result = change(path);
        if (!result) {
            line.fail(QStringLiteral("could not save: ") + path, exitPartial);
            ++failed;
            continue;
        }
        if (!result.record)
            line.fail(QStringLiteral("not a favourite: ") + path, exitOk);
    }
    return failed == 0 ? exitOk : exitPartial;
}

QJsonObject toJson(const library::FavourRecord& record)
{
    return {{QStringLiteral("path"), record.filePath},
            {QStringLiteral("name"), record.fileName},
            {QStringLiteral("type"), record.favourType ? library::storedText(*record.favourType) : QJsonValue()},
            {QStringLiteral("createdAt"), record.createdAt},
            {QStringLiteral("updatedAt"), record.updatedAt}};
}

int list(const CommandLine& line, FavourManager& manager)
{
    QTextStream& out = standardOutput();
    const auto cannotRead = [&] {
        return line.fail(QStringLiteral("cannot read the favourites: ") + manager.dbManager().lastError().message,
                         exitUsage);
    };
    if (!line.json()) {
        // Read and printed row by row: nothing of the 50,000 records is kept but the line being written.
        if (!manager.forEachFavouritePath([&](const QString& path) { out << escapedForLine(path) << "\n"; }))
            return cannotRead();
        out.flush();
        return exitOk;
    }
    const auto favourites = manager.favourites();
    if (!favourites)
        return cannotRead();
    QJsonArray array;
    for (const auto& record : *favourites)
        array.append(toJson(record));
    out << QJsonDocument(array).toJson(QJsonDocument::Compact) << "\n";
    out.flush();
    return exitOk;
}

int audit(const CommandLine& line, FavourManager& manager)
{
    const auto empty = manager.audit();
    const auto favourites = manager.favourites();
    if (!empty || !favourites)
        return line.fail(QStringLiteral("cannot read the favourites: ") + manager.dbManager().lastError().message,
                         exitUsage);
    QStringList missing;
    for (const auto& record : *favourites) {
        if (!record.filePath.isEmpty() && !platform::FileNameCodec::exists(record.filePath))
            missing << record.filePath;
    }
    // Only rows without a path go: a missing picture may sit on a disk that is not mounted right now.
    int removed = 0;
    if (line.isSet(QStringLiteral("clean")) && *empty > 0) {
        const auto count = manager.removeEmptyPathRecords();
        if (!count)
            return line.fail(QStringLiteral("could not remove the records without a path"), exitPartial);
        removed = *count;
    }
    QTextStream& out = standardOutput();
    if (line.json()) {
        out << QJsonDocument(QJsonObject{{QStringLiteral("emptyPath"), *empty},
                                         {QStringLiteral("missing"), QJsonArray::fromStringList(missing)},
                                         {QStringLiteral("removed"), removed}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
    } else {
        out << "records without a path: " << *empty << "\n";
        for (const QString& path : missing)
            out << "missing: " << escapedForLine(path) << "\n";
        if (line.isSet(QStringLiteral("clean")))
            out << "removed: " << removed << "\n";
    }
    out.flush();
    return exitOk;
}

} // namespace

int runFav(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("fav"),
                     QStringLiteral("Mark pictures as favourites and list them.\n\n"
                                    "  add PATH...        mark the pictures as favourites\n"
                                    "  remove PATH...     unmark them (their type is kept)\n"
                                    "  type TYPE PATH...  mark them as favourites of TYPE; 'none' clears the type\n"
                                    "  list               print the favourites, newest change first\n"
                                    "  audit              count broken records; --clean removes those without a path\n\n"
                                    "Types: ")
                         + typeNames());
    line.addPositional(QStringLiteral("SUBCOMMAND"), QStringLiteral("add, remove, type, list or audit."),
                       QStringLiteral("add|remove|type TYPE|list|audit"));
    line.addPositional(QStringLiteral("PATH"), QStringLiteral("Pictures to change."), QStringLiteral("[PATH...]"));
    line.addJsonOption();
    line.addOption({QStringLiteral("clean"), QStringLiteral("audit: remove the records that have no path.")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto words = line.positional(1);
    if (!words)
        return exitUsage;
    const QString subcommand = words->constFirst();
    QStringList rest = words->mid(1);
    if (!kSubcommands.contains(subcommand))
        return line.usageError(QStringLiteral("unknown subcommand '%1'").arg(subcommand));
    const bool takesPaths = subcommand == QLatin1String("add") || subcommand == QLatin1String("remove")
                            || subcommand == QLatin1String("type");
    if (!takesPaths && !rest.isEmpty())
        return line.usageError(subcommand + QStringLiteral(" takes no paths"));
    std::optional<FavourType> type;
    bool clearsType = false;
    if (subcommand == QLatin1String("type")) {
        if (rest.isEmpty())
            return line.usageError(QStringLiteral("type needs a TYPE"));
        const QString name = rest.takeFirst();
        clearsType = name.compare(QLatin1String("none"), Qt::CaseInsensitive) == 0;
        type = library::favourTypeFromText(name);
        if (!type && !clearsType)
            return line.usageError(QStringLiteral("unknown type '%1'; one of: %2").arg(name, typeNames()));
    }
    if (takesPaths && rest.isEmpty())
        return line.usageError(subcommand + QStringLiteral(" needs at least one PATH"));

    FavourManager manager(platform::QSettingsStore::shared());
    if (!manager.open({}, false))
        return line.fail(QStringLiteral("cannot open the favourites database %1: %2")
                             .arg(manager.dbManager().defaultPath(), manager.dbManager().lastError().message),
                         exitUsage);
    // A damaged store stays exactly as it is, for the user to recover: nothing is written into it.
    const bool writes = takesPaths || line.isSet(QStringLiteral("clean"));
    if (writes && !manager.dbManager().checkIntegrity())
        return line.fail(
            QStringLiteral("the favourites database %1 is damaged, nothing was written (%2). Keep a copy "
                           "of it; `sqlite3 %1 .recover` gets back what can be read.")
                .arg(manager.dbManager().path(), manager.dbManager().lastError().message),
            exitUsage);
    if (subcommand == QLatin1String("list"))
        return list(line, manager);
    if (subcommand == QLatin1String("audit"))
        return audit(line, manager);
    if (subcommand == QLatin1String("add"))
        return forEachPath(line, rest, true, [&](const QString& path) { return manager.setFavour(path, true); });
    if (subcommand == QLatin1String("remove"))
        return forEachPath(line, rest, false, [&](const QString& path) { return manager.setFavour(path, false); });
    return forEachPath(line, rest, !clearsType, [&](const QString& path) { return manager.setType(path, type); });
}

} // namespace lumaro::cli
