// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"

#include "platform/files/FileNameCodec.h"

#include "cli/FolderArgument.h"
#include "cli/front/LineEscape.h"
#include "platform/Log.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>

namespace lumaro::cli {

QTextStream& standardOutput()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream& standardError()
{
    static QTextStream stream(stderr);
    return stream;
}

CommandLine::CommandLine(QString command, const QString& description) : m_command(std::move(command))
{
    m_parser.setApplicationDescription(description);
    m_parser.addHelpOption();
    m_parser.addOption(
        {{QStringLiteral("q"), QStringLiteral("quiet")}, QStringLiteral("Hide the log lines.")});
}

void CommandLine::addJsonOption()
{
    m_json = true;
    m_parser.addOption({QStringLiteral("json"), QStringLiteral("Print the results as JSON.")});
}

void CommandLine::addOption(const QCommandLineOption& option)
{
    m_parser.addOption(option);
}

void CommandLine::addPositional(const QString& name, const QString& description, const QString& syntax)
{
    m_parser.addPositionalArgument(name, description, syntax);
}

void CommandLine::addSubcommands(const QList<Subcommand>& subcommands)
{
    m_subcommands = subcommands;
    QStringList names;
    for (const Subcommand& subcommand : subcommands)
        names << subcommand.name;
    const QString syntax = names.join(QLatin1Char('|'));
    const QString last = names.takeLast();
    m_parser.addPositionalArgument(
        QStringLiteral("SUBCOMMAND"),
        names.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last + QLatin1Char('.'), syntax);
    m_parser.addPositionalArgument(QStringLiteral("ARGS"), QStringLiteral("What the subcommand needs."),
                                   QStringLiteral("[ARGS...]"));
}

QString CommandLine::usage() const
{
    // QCommandLineParser names the executable; the command's own name belongs after it.
    QString text = m_parser.helpText();
    const QString prefix = QStringLiteral("Usage: ");
    const qsizetype programEnd = text.indexOf(QLatin1Char(' '), prefix.size());
    if (text.startsWith(prefix) && programEnd > 0)
        text.replace(prefix.size(), programEnd - prefix.size(), QStringLiteral("lumaro-cli ") + m_command);
    return text;
}

std::optional<int> CommandLine::parse(const QStringList& arguments)
{
    // Known before parsing, so that even a usage error is answered in JSON to a caller who asked for it.
    m_jsonAsked = m_json && arguments.contains(QStringLiteral("--json"));
    if (!m_parser.parse(QStringList{m_command} + arguments))
        return usageError(m_parser.errorText());
    // --help-all would add Qt's own options, which only a Qt application has; without one it is --help.
    if (m_parser.isSet(QStringLiteral("help")) || m_parser.isSet(QStringLiteral("help-all"))) {
        standardOutput() << usage();
        standardOutput().flush();
        return 0;
    }
    if (m_parser.isSet(QStringLiteral("quiet")))
        platform::Log::silence();
    else
        platform::Log::toStandardError();
    return std::nullopt;
}

std::optional<QStringList> CommandLine::positional(qsizetype minimum)
{
    const QStringList words = m_parser.positionalArguments();
    if (words.size() < minimum) {
        usageError(QStringLiteral("missing arguments"));
        return std::nullopt;
    }
    return words;
}

std::optional<SubcommandCall> CommandLine::subcommand()
{
    const auto words = positional(1);
    if (!words)
        return std::nullopt;
    const SubcommandCall call{words->constFirst(), words->mid(1)};
    const auto known =
        std::find_if(m_subcommands.cbegin(), m_subcommands.cend(),
                     [&](const Subcommand& subcommand) { return subcommand.name == call.name; });
    if (known == m_subcommands.cend()) {
        usageError(QStringLiteral("unknown subcommand '%1'").arg(call.name));
        return std::nullopt;
    }
    if (call.arguments.size() < known->fewest || call.arguments.size() > known->most) {
        const QString count = known->fewest == known->most ? QString::number(known->fewest)
                              : known->most == Subcommand::anyNumber
                                  ? QStringLiteral("at least %1").arg(known->fewest)
                                  : QStringLiteral("%1-%2").arg(known->fewest).arg(known->most);
        usageError(QStringLiteral("%1 takes %2 argument(s)").arg(call.name, count));
        return std::nullopt;
    }
    return call;
}

std::optional<int> CommandLine::number(const QString& name, int low, int high) const
{
    bool ok = false;
    const int value = m_parser.value(name).toInt(&ok);
    if (!ok || value < low || value > high)
        return std::nullopt;
    return value;
}

std::optional<QString> CommandLine::folderArgument(const QString& tooManyMessage)
{
    const auto words = positional(1);
    if (!words)
        return std::nullopt;
    if (words->size() > 1) {
        usageError(tooManyMessage);
        return std::nullopt;
    }
    const QString folder = words->constFirst();
    if (const auto problem = problemWithFolder(folder)) {
        fail(*problem, 2);
        return std::nullopt;
    }
    return folder;
}

void CommandLine::printJsonError(const QString& message, int code) const
{
    if (!m_jsonAsked)
        return;
    standardOutput() << QJsonDocument(QJsonObject{{QStringLiteral("error"), message},
                                                  {QStringLiteral("exitCode"), code}})
                            .toJson(QJsonDocument::Compact)
                     << "\n";
    standardOutput().flush();
}

int CommandLine::fail(const QString& message, int code) const
{
    printJsonError(message, code);
    standardError() << "lumaro-cli " << m_command << ": " << message << Qt::endl;
    return code;
}

void CommandLine::itemFailed(const QString& item, const QString& reason) const
{
    standardError() << "lumaro-cli " << m_command << ": " << escapedForLine(item) << ": "
                    << escapedForLine(reason) << Qt::endl;
}

int CommandLine::usageError(const QString& message) const
{
    printJsonError(message, 2);
    standardError() << "lumaro-cli " << m_command << ": " << message << "\n\n" << usage();
    standardError().flush();
    return 2;
}

QString escapedForLine(const QString& name)
{
    const bool plain =
        !platform::FileNameCodec::hasRawBytes(name) && std::none_of(name.cbegin(), name.cend(), [](QChar c) {
            return c.unicode() < 0x20 || c.unicode() == 0x7f || c == QLatin1Char('\\');
        });
    if (plain)
        return name;
    const QByteArray bytes = platform::FileNameCodec::encode(name);
    return QString::fromStdString(
        escapedLineBytes(std::string_view(bytes.constData(), size_t(bytes.size()))));
}

} // namespace lumaro::cli
