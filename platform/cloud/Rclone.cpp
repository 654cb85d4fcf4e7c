// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/Rclone.h"

#include <QElapsedTimer>
#include <QJsonArray>
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

} // namespace

QString RcloneResult::reason() const
{
    if (!started)
        return QStringLiteral("rclone is not installed (apt-get install rclone)");
    if (stalledFor.count() > 0)
        return QStringLiteral("the store stopped answering: nothing was sent for %1 s")
            .arg(stalledFor.count());
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

    RcloneLogReader log(progress);
    const auto drain = [&] {
        result.output += process.readAllStandardOutput();
        log.feed(process.readAllStandardError());
    };
    const auto stop = [&] {
        process.terminate();
        if (!process.waitForFinished(3000))
            process.kill();
    };
    QElapsedTimer sinceSent;
    sinceSent.start();
    qint64 sent = 0;
    while (process.state() != QProcess::NotRunning) {
        if (cancel && cancel->load()) {
            result.cancelled = true;
            stop();
            break;
        }
        process.waitForReadyRead(200);
        drain();
        if (const RcloneProgress& now = log.last(); now.bytes != sent || now.bytes >= now.totalBytes) {
            sent = now.bytes;
            sinceSent.restart();
        } else if (sinceSent.elapsed() >= std::chrono::milliseconds(m_stallLimit).count()) {
            result.stalledFor = m_stallLimit;
            stop();
            break;
        }
    }
    process.waitForFinished(-1);
    drain();
    log.finish();
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.errors = log.errors();
    result.last = log.last();
    if (result.exitCode != 0 && result.errors.isEmpty() && !log.lastPlainLine().isEmpty())
        result.errors.append(log.lastPlainLine());
    return result;
}

Rclone Rclone::with(const QMap<QString, QString>& more) const
{
    Rclone extended(*this);
    extended.m_environment.insert(more);
    return extended;
}

Rclone Rclone::withStallLimit(std::chrono::seconds limit) const
{
    Rclone limited(*this);
    limited.m_stallLimit = limit;
    return limited;
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
    return freeBytesIn(about.output);
}

std::optional<qint64> Rclone::freeBytesIn(const QByteArray& about)
{
    // toInteger, not a cast of toDouble: a double beyond qint64 does not convert (undefined behaviour).
    const qint64 free = QJsonDocument::fromJson(about).object().value(QStringLiteral("free")).toInteger(-1);
    return free >= 0 ? std::optional<qint64>(free) : std::nullopt;
}

QHash<QString, qint64> Rclone::fileSizesIn(const QByteArray& listing)
{
    QHash<QString, qint64> sizes;
    for (const QJsonValue& file : QJsonDocument::fromJson(listing).array()) {
        const qint64 size = file[QStringLiteral("Size")].toInteger(-1);
        if (size >= 0)
            sizes.insert(file[QStringLiteral("Path")].toString(), size);
    }
    return sizes;
}

} // namespace lumaro::platform
