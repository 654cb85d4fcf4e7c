// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/Rclone.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

namespace lumaro::platform {

namespace {

QString program()
{
    return QStandardPaths::findExecutable(QStringLiteral("rclone"));
}

// rclone writes one JSON object per line to standard error with --use-json-log; a few early lines (before the
// log is set up) are plain text.
void readLogLine(const QByteArray& line, RcloneResult& result, QStringList& plainLines,
                 const std::function<void(const RcloneProgress&)>& progress)
{
    const QByteArray trimmed = line.trimmed();
    if (trimmed.isEmpty())
        return;
    const QJsonDocument document = QJsonDocument::fromJson(trimmed);
    if (!document.isObject()) {
        plainLines.append(QString::fromUtf8(trimmed));
        return;
    }
    const QJsonObject entry = document.object();
    const QString level = entry.value(QStringLiteral("level")).toString();
    if (level == QLatin1String("error") || level == QLatin1String("critical") ||
        level == QLatin1String("fatal")) {
        QString message = entry.value(QStringLiteral("msg")).toString().trimmed();
        const QString object = entry.value(QStringLiteral("object")).toString();
        if (!object.isEmpty())
            message = object + QStringLiteral(": ") + message;
        result.errors.append(message);
    }
    const QJsonObject stats = entry.value(QStringLiteral("stats")).toObject();
    if (!stats.isEmpty()) {
        result.last.bytes = qint64(stats.value(QStringLiteral("bytes")).toDouble());
        result.last.totalBytes = qint64(stats.value(QStringLiteral("totalBytes")).toDouble());
        result.last.transfers = stats.value(QStringLiteral("transfers")).toInt();
        result.last.errors = stats.value(QStringLiteral("errors")).toInt();
        if (progress)
            progress(result.last);
    }
}

} // namespace

QString RcloneResult::reason() const
{
    if (!started)
        return QStringLiteral("rclone is not installed (apt-get install rclone)");
    if (cancelled)
        return QStringLiteral("cancelled");
    if (!errors.isEmpty())
        return errors.constLast();
    return QStringLiteral("rclone exited with code %1").arg(exitCode);
}

Rclone::Rclone(QMap<QString, QString> environment) : m_environment(std::move(environment)) {}

bool Rclone::isInstalled()
{
    return !program().isEmpty();
}

RcloneResult Rclone::run(const QStringList& arguments,
                         const std::function<void(const RcloneProgress&)>& progress,
                         const std::atomic_bool* cancel, const QByteArray& input) const
{
    RcloneResult result;
    const QString rclone = program();
    if (rclone.isEmpty())
        return result;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto it = m_environment.cbegin(); it != m_environment.cend(); ++it)
        environment.insert(it.key(), it.value());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProgram(rclone);
    process.setArguments(arguments + QStringList{QStringLiteral("--use-json-log"), QStringLiteral("--stats"),
                                                 QStringLiteral("1s"), QStringLiteral("--stats-log-level"),
                                                 QStringLiteral("NOTICE")});
    process.start();
    if (!process.waitForStarted())
        return result;
    result.started = true;
    if (!input.isEmpty())
        process.write(input);
    process.closeWriteChannel();

    QByteArray pending;
    QStringList plainLines;
    const auto drain = [&] {
        result.output += process.readAllStandardOutput();
        pending += process.readAllStandardError();
        qsizetype end;
        while ((end = pending.indexOf('\n')) >= 0) {
            readLogLine(pending.left(end), result, plainLines, progress);
            pending.remove(0, end + 1);
        }
    };
    while (process.state() != QProcess::NotRunning) {
        if (cancel && cancel->load()) {
            result.cancelled = true;
            process.terminate();
            if (!process.waitForFinished(3000))
                process.kill();
            break;
        }
        process.waitForReadyRead(200);
        drain();
    }
    process.waitForFinished(-1);
    drain();
    readLogLine(pending, result, plainLines, progress);
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    if (result.exitCode != 0 && result.errors.isEmpty() && !plainLines.isEmpty())
        result.errors.append(plainLines.constLast());
    return result;
}

Rclone Rclone::with(const QMap<QString, QString>& more) const
{
    QMap<QString, QString> environment = m_environment;
    environment.insert(more);
    return Rclone(environment);
}

std::optional<QString> Rclone::obscured(const QString& secret) const
{
    // Through standard input: a secret on the command line is visible to every user in the process list.
    const RcloneResult result =
        run({QStringLiteral("obscure"), QStringLiteral("-")}, {}, nullptr, secret.toUtf8());
    if (!result.ok())
        return std::nullopt;
    return QString::fromUtf8(result.output).trimmed();
}

std::optional<qint64> Rclone::freeBytes(const QString& remote, QString* error) const
{
    const QString root = remote.left(remote.indexOf(QLatin1Char(':')) + 1);
    const RcloneResult about = run({QStringLiteral("about"), root, QStringLiteral("--json")});
    if (!about.ok()) {
        if (error)
            *error = about.reason();
        return std::nullopt;
    }
    const QJsonValue free = QJsonDocument::fromJson(about.output).object().value(QStringLiteral("free"));
    if (!free.isDouble())
        return std::nullopt;
    return qint64(free.toDouble());
}

} // namespace lumaro::platform
