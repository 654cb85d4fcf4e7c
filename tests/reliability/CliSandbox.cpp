// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/reliability/CliSandbox.h"

#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

namespace lumaro::testing {

const QString kFileChangingCalls = QStringLiteral(
    "openat,write,pwrite64,rename,renameat,renameat2,link,linkat,unlink,unlinkat,fsync,fdatasync,ftruncate,"
    "copy_file_range,sendfile,setxattr,fsetxattr,mkdir,close");

CliSandbox::CliSandbox(const QString& root) : m_root(root)
{
    for (const char* folder : {"home", "config", "data", "cache", "state", "runtime"})
        QDir().mkpath(m_root + QLatin1Char('/') + QLatin1String(folder));
}

QString CliSandbox::homeTrashFiles() const
{
    return m_root + QStringLiteral("/data/Trash/files");
}

QString CliSandbox::favouritesDatabase() const
{
    return m_root + QStringLiteral("/data/lumaro/fav.db");
}

QString CliSandbox::configFile() const
{
    return m_root + QStringLiteral("/config/lumaro/lumaro.conf");
}

QProcessEnvironment CliSandbox::environment() const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), m_root + QStringLiteral("/home"));
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_root + QStringLiteral("/config"));
    env.insert(QStringLiteral("XDG_DATA_HOME"), m_root + QStringLiteral("/data"));
    env.insert(QStringLiteral("XDG_CACHE_HOME"), m_root + QStringLiteral("/cache"));
    env.insert(QStringLiteral("XDG_STATE_HOME"), m_root + QStringLiteral("/state"));
    env.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_root + QStringLiteral("/runtime"));
    const QString models = sharedModelsDir();
    if (!models.isEmpty() && !env.contains(QStringLiteral("LUMARO_MODELS_DIR")))
        env.insert(QStringLiteral("LUMARO_MODELS_DIR"), models);
    return env;
}

CliRun CliSandbox::run(const QStringList& arguments, const QStringList& straceOptions) const
{
    QProcess process;
    process.setProcessEnvironment(environment());
    if (straceOptions.isEmpty()) {
        process.setProgram(QStringLiteral(LUMARO_CLI_PATH));
        process.setArguments(arguments);
    } else {
        process.setProgram(QStringLiteral("strace"));
        process.setArguments(QStringList{QStringLiteral("-f"), QStringLiteral("-qq"), QStringLiteral("-o"),
                                         QStringLiteral("/dev/null")} +
                             straceOptions +
                             QStringList{QStringLiteral("--"), QStringLiteral(LUMARO_CLI_PATH)} + arguments);
    }
    process.start();
    CliRun result;
    if (!process.waitForFinished(300'000)) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    // strace ends itself with the signal that ended the command.
    result.killed = process.exitStatus() == QProcess::CrashExit;
    result.exitCode = result.killed ? -1 : process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

QList<TracedCall> CliSandbox::trace(const QStringList& arguments, const QString& calls) const
{
    const QString log = m_root + QStringLiteral("/strace.log");
    run(arguments, {QStringLiteral("-o"), log, QStringLiteral("-e"), QStringLiteral("trace=") + calls});
    QFile file(log);
    QList<TracedCall> traced;
    if (!file.open(QIODevice::ReadOnly))
        return traced;
    static const QRegularExpression pattern(QStringLiteral("^(\\d+)\\s+([a-z0-9_]+)\\("));
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine());
        const QRegularExpressionMatch match = pattern.match(line);
        if (match.hasMatch())
            traced.append({match.captured(1), match.captured(2), line});
    }
    file.remove();
    return traced;
}

bool CliSandbox::canTrace()
{
    static const bool available = [] {
        if (QStandardPaths::findExecutable(QStringLiteral("strace")).isEmpty())
            return false;
        QProcess probe;
        probe.start(QStringLiteral("strace"), {QStringLiteral("-qq"), QStringLiteral("-o"),
                                               QStringLiteral("/dev/null"), QStringLiteral("true")});
        return probe.waitForFinished(30'000) && probe.exitStatus() == QProcess::NormalExit &&
               probe.exitCode() == 0;
    }();
    return available;
}

QStringList killAt(const QString& name, int nth)
{
    return {QStringLiteral("-e"), QStringLiteral("trace=") + name, QStringLiteral("-e"),
            QStringLiteral("inject=%1:signal=SIGKILL:when=%2").arg(name).arg(nth)};
}

} // namespace lumaro::testing
