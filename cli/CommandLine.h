// SPDX-License-Identifier: GPL-3.0-or-later
// The option handling every lumaro-cli command shares: --help, --quiet, --json, positional arguments,
// and where log lines and results go.
#pragma once

#include <QCommandLineParser>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <limits>
#include <optional>

namespace lumaro::cli {

// One subcommand of a command made of them ("channel rename CHANNEL NAME") and how many arguments it takes.
struct Subcommand
{
    static constexpr int anyNumber = std::numeric_limits<int>::max();

    QString name;
    int fewest = 0;
    int most = 0;
};

// A subcommand as given: its name and the words after it.
struct SubcommandCall
{
    QString name;
    QStringList arguments;
};

// Results go to standard output; the system's log lines go to standard error unless --quiet; the reason each
// failed item failed goes to standard error always.
class CommandLine
{
public:
    CommandLine(QString command, const QString& description);

    void addJsonOption();
    void addOption(const QCommandLineOption& option);
    void addPositional(const QString& name, const QString& description, const QString& syntax = {});
    // Declares SUBCOMMAND and ARGS for a command made of `subcommands`; read them with subcommand().
    void addSubcommands(const QList<Subcommand>& subcommands);

    // Parses `arguments` (the words after the command's name). Returns an exit code when the command should
    // stop now: 0 after --help, 2 after bad usage (the reason and the usage are printed). nullopt: go on.
    std::optional<int> parse(const QStringList& arguments);
    // Positional arguments; when fewer than `minimum`, prints the usage and returns nullopt.
    std::optional<QStringList> positional(qsizetype minimum);
    // The subcommand given and its arguments. nullopt when none was given, it is unknown or has too few or
    // too many arguments (the reason and the usage are printed): the command then exits with 2.
    std::optional<SubcommandCall> subcommand();
    // The command's one folder argument, checked to be a readable folder. nullopt when it is missing, when
    // more were given (`tooManyMessage` is printed with the usage) or when it is no usable folder (the reason
    // is printed): the command then exits with 2.
    std::optional<QString> folderArgument(const QString& tooManyMessage);

    bool json() const { return m_json && m_parser.isSet(QStringLiteral("json")); }
    bool isSet(const QString& name) const { return m_parser.isSet(name); }
    // The option's value as a whole number in low…high, or nullopt when it is not one.
    std::optional<int> number(const QString& name, int low, int high) const;
    QString value(const QString& name) const { return m_parser.value(name); }
    QStringList values(const QString& name) const { return m_parser.values(name); }

    // Prints "lumaro-cli COMMAND: message" on standard error and returns `code`; with --json, also
    // {"error": message, "exitCode": code} on standard output, so a JSON caller always gets JSON.
    int fail(const QString& message, int code) const;
    int usageError(const QString& message) const;
    // "lumaro-cli COMMAND: ITEM: reason" on standard error for one item of a batch that failed. Printed with
    // --quiet and --json too: quiet hides the progress, never why a file was left out.
    void itemFailed(const QString& item, const QString& reason) const;

private:
    QString usage() const;
    void printJsonError(const QString& message, int code) const;

    QString m_command;
    QCommandLineParser m_parser;
    bool m_json = false;
    bool m_jsonAsked = false;
    QList<Subcommand> m_subcommands;
};

QTextStream& standardOutput();
QTextStream& standardError();

// A name made safe for one line of plain output: control characters (a newline in a file name) escaped as
// \n, \t, \xHH, and backslashes doubled, so one line is always one name.
QString escapedForLine(const QString& name);

} // namespace lumaro::cli
