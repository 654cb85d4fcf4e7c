// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli roll publish|list|unpublish: a folder as an online album on the photographer's own storage.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/ProgressBar.h"

#include "platform/Terminal.h"
#include "rolls/RollPublisher.h"
#include "rolls/StorageAccounts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace lumaro::cli {

namespace {

QJsonObject rollJson(const rolls::PublishedRoll& roll)
{
    return {{QStringLiteral("name"), roll.name},
            {QStringLiteral("folder"), roll.folder},
            {QStringLiteral("target"), roll.target},
            {QStringLiteral("pictures"), roll.pictures},
            {QStringLiteral("bytes"), double(roll.bytes)},
            {QStringLiteral("link"), roll.link},
            {QStringLiteral("publishedAt"), roll.publishedAt.toString(Qt::ISODate)}};
}

// rclone with the accounts set up in Lumaro, their secrets from the keyring; one that cannot be read is
// named.
platform::Rclone withAccounts()
{
    QStringList problems;
    const platform::Rclone rclone;
    const platform::Rclone withSecrets = rclone.with(rolls::StorageAccounts::environment(rclone, &problems));
    for (const QString& problem : problems)
        standardError() << "lumaro-cli roll: the keyring has no password for " << problem << "\n";
    return withSecrets;
}

int exitCodeOf(rolls::PublishStatus status)
{
    switch (status) {
    case rolls::PublishStatus::published:
        return exitOk;
    case rolls::PublishStatus::refused:
        return exitUsage;
    default:
        return exitPartial;
    }
}

int publish(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("roll publish"),
        QStringLiteral("Publish FOLDER as an album (previews, thumbnails and index.html) to "
                       "REMOTE:PATH/<name> with rclone. Publishing again sends only what changed "
                       "and removes what the folder no longer has."));
    line.addPositional(QStringLiteral("FOLDER"), QStringLiteral("The folder to publish."));
    line.addJsonOption();
    line.addOption({QStringLiteral("to"), QStringLiteral("Where the roll goes: an rclone remote and path."),
                    QStringLiteral("REMOTE:PATH")});
    line.addOption({QStringLiteral("name"), QStringLiteral("The roll's name (default: the folder's)."),
                    QStringLiteral("NAME")});
    line.addOption({QStringLiteral("budget"), QStringLiteral("Refuse when the roll would be bigger than MB."),
                    QStringLiteral("MB")});
    line.addOption({QStringLiteral("originals"), QStringLiteral("Also publish the original files.")});
    line.addOption({QStringLiteral("keep-location"), QStringLiteral("Leave GPS tags in published copies.")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto folder = line.folderArgument(QStringLiteral("roll publish takes one folder"));
    if (!folder)
        return exitUsage;
    if (!line.isSet(QStringLiteral("to")))
        return line.usageError(QStringLiteral("--to REMOTE:PATH is needed"));
    rolls::RollRequest request{
        *folder,
        line.value(QStringLiteral("to")),
        line.value(QStringLiteral("name")),
        {},
        {line.isSet(QStringLiteral("originals")), line.isSet(QStringLiteral("keep-location")), {}}};
    if (line.isSet(QStringLiteral("budget"))) {
        const auto budget = line.number(QStringLiteral("budget"), 1, 100'000'000);
        if (!budget)
            return line.usageError(QStringLiteral("--budget takes a whole number of MB"));
        request.budgetBytes = qint64(*budget) * 1'000'000;
    }

    std::optional<ProgressBar> bar;
    rolls::RollProgress::Step shown = rolls::RollProgress::Step::finishing;
    qint64 drawn = 0;
    const rolls::PublishOutcome outcome =
        rolls::RollPublisher(withAccounts()).publish(request, [&](const rolls::RollProgress& p) {
            if (p.step != shown) {
                bar.reset();
                bar.emplace(p.step == rolls::RollProgress::Step::preparing ? QStringLiteral("preparing")
                                                                           : QStringLiteral("sending"),
                            p.total);
                shown = p.step;
                drawn = 0;
            }
            bar->advance(p.done - drawn);
            drawn = p.done;
        });
    bar.reset();
    for (const QString& failure : outcome.failures)
        standardError() << "lumaro-cli roll publish: " << escapedForLine(failure) << "\n";
    const int code = exitCodeOf(outcome.status);
    if (outcome.status != rolls::PublishStatus::published && outcome.status != rolls::PublishStatus::partly)
        return line.fail(outcome.message, code);
    QTextStream& out = standardOutput();
    if (line.json()) {
        QJsonObject json = rollJson(outcome.roll);
        json.insert(QStringLiteral("sentBytes"), double(outcome.sentBytes));
        json.insert(QStringLiteral("failures"), QJsonArray::fromStringList(outcome.failures));
        out << QJsonDocument(json).toJson(QJsonDocument::Indented);
    } else {
        out << outcome.message << "\n";
        if (!outcome.roll.link.isEmpty())
            out << outcome.roll.link << "\n";
    }
    return code;
}

int list(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("roll list"), QStringLiteral("The rolls published from this computer."));
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    QTextStream& out = standardOutput();
    const QList<rolls::PublishedRoll> all = rolls::RollStore::all();
    if (line.json()) {
        QJsonArray array;
        for (const rolls::PublishedRoll& roll : all)
            array.append(rollJson(roll));
        out << QJsonDocument(array).toJson(QJsonDocument::Indented);
        return exitOk;
    }
    for (const rolls::PublishedRoll& roll : all)
        out << escapedForLine(roll.name) << "\t" << roll.target << "\t" << roll.pictures << "\t"
            << roll.publishedAt.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm")) << "\t"
            << roll.link << "\n";
    return exitOk;
}

bool userAgrees(const rolls::PublishedRoll& roll)
{
    if (!platform::Terminal::isStandardInputTerminal())
        return false;
    standardError() << "Remove " << roll.target << " (" << roll.pictures
                    << " pictures) from the remote? [y/N] ";
    standardError().flush();
    char answer[8] = {};
    return std::fgets(answer, sizeof answer, stdin) && (answer[0] == 'y' || answer[0] == 'Y');
}

int unpublish(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("roll unpublish"),
                     QStringLiteral("Remove a published roll's folder from the remote (asks first)."));
    line.addPositional(QStringLiteral("ROLL"), QStringLiteral("The roll's name or REMOTE:PATH/name."));
    line.addOption({QStringLiteral("yes"), QStringLiteral("Do not ask.")});
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto words = line.positional(1);
    if (!words)
        return exitUsage;
    const auto roll = rolls::RollStore::find(words->constFirst());
    if (!roll)
        return line.fail(QStringLiteral("%1: no such published roll (see `lumaro-cli roll list`)")
                             .arg(escapedForLine(words->constFirst())),
                         exitUsage);
    if (!line.isSet(QStringLiteral("yes")) && !userAgrees(*roll))
        return line.fail(QStringLiteral("not removed (answer y, or pass --yes)"), exitUsage);
    QString error;
    if (!rolls::RollPublisher(withAccounts()).unpublish(*roll, &error))
        return line.fail(roll->target + QStringLiteral(": ") + error, exitPartial);
    standardOutput() << "removed " << roll->target << "\n";
    return exitOk;
}

int account(const QStringList& arguments)
{
    const QString action = arguments.value(0);
    CommandLine line(
        QStringLiteral("roll account ") + action,
        QStringLiteral("Storage accounts for rolls: settings in Lumaro's data folder, the password "
                       "or secret key in the desktop keyring (read from standard input)."));
    if (action == QLatin1String("add")) {
        line.addPositional(QStringLiteral("NAME"), QStringLiteral("The remote's name, used as NAME:path."));
        line.addOption({QStringLiteral("type"), QStringLiteral("rclone's backend: webdav, sftp, s3, b2, …"),
                        QStringLiteral("TYPE")});
        line.addOption({QStringLiteral("set"),
                        QStringLiteral("A setting of the backend (url=…, user=…, host=…)."),
                        QStringLiteral("KEY=VALUE")});
        line.addOption(
            {QStringLiteral("secret-stdin"),
             QStringLiteral("Read the password (or secret key) from the first line of standard input.")});
    } else if (action == QLatin1String("remove")) {
        line.addPositional(QStringLiteral("NAME"), QStringLiteral("The account to remove."));
    } else if (action != QLatin1String("list")) {
        return line.usageError(QStringLiteral("roll account add|list|remove"));
    }
    if (const auto stop = line.parse(arguments.mid(1)))
        return *stop;
    if (action == QLatin1String("list")) {
        for (const rolls::StorageAccount& account : rolls::StorageAccounts::all())
            standardOutput() << account.name << ":\t" << account.type << "\n";
        return exitOk;
    }
    const auto words = line.positional(1);
    if (!words)
        return exitUsage;
    QString error;
    if (action == QLatin1String("remove"))
        return rolls::StorageAccounts::remove(words->constFirst(), &error) ? exitOk
                                                                           : line.fail(error, exitUsage);
    if (!line.isSet(QStringLiteral("type")))
        return line.usageError(QStringLiteral("--type is needed"));
    rolls::StorageAccount account{words->constFirst(), line.value(QStringLiteral("type")), {}};
    for (const QString& setting : line.values(QStringLiteral("set"))) {
        const qsizetype equals = setting.indexOf(QLatin1Char('='));
        if (equals <= 0)
            return line.usageError(QStringLiteral("--set takes KEY=VALUE"));
        account.options.insert(setting.left(equals), setting.mid(equals + 1));
    }
    QString secret;
    if (line.isSet(QStringLiteral("secret-stdin"))) {
        char buffer[4096] = {};
        if (std::fgets(buffer, sizeof buffer, stdin))
            secret = QString::fromUtf8(buffer).remove(QLatin1Char('\n')).remove(QLatin1Char('\r'));
        if (secret.isEmpty())
            return line.usageError(QStringLiteral("no secret on standard input"));
    }
    if (!rolls::StorageAccounts::add(account, secret, &error))
        return line.fail(error, exitUsage);
    standardOutput() << "account " << account.name << ": saved"
                     << (secret.isEmpty() ? "" : ", secret in the keyring") << "\n";
    return exitOk;
}

} // namespace

int runRoll(const QStringList& arguments)
{
    const QString sub = arguments.value(0);
    if (sub == QLatin1String("publish"))
        return publish(arguments.mid(1));
    if (sub == QLatin1String("list"))
        return list(arguments.mid(1));
    if (sub == QLatin1String("unpublish"))
        return unpublish(arguments.mid(1));
    if (sub == QLatin1String("account"))
        return account(arguments.mid(1));
    // Asked for, the usage is the answer (standard output, 0); otherwise it says what was wrong (2).
    const bool asked =
        sub == QLatin1String("--help") || sub == QLatin1String("-h") || sub == QLatin1String("--help-all");
    QTextStream& stream = asked ? standardOutput() : standardError();
    stream << "usage: lumaro-cli roll publish FOLDER --to REMOTE:PATH [--name NAME] [--budget MB] "
              "[--originals] [--keep-location] [--json]\n"
              "       lumaro-cli roll list [--json]\n"
              "       lumaro-cli roll unpublish ROLL [--yes]\n"
              "       lumaro-cli roll account add NAME --type TYPE [--set KEY=VALUE]... [--secret-stdin]\n"
              "       lumaro-cli roll account list | remove NAME\n";
    stream.flush();
    return asked ? exitOk : exitUsage;
}

} // namespace lumaro::cli
