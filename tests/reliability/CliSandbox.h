// SPDX-License-Identifier: GPL-3.0-or-later
// Runs lumaro-cli with homes of its own, plainly or under strace, which kills it or fails one of its system
// calls at a chosen moment.
#pragma once

#include <QByteArray>
#include <QList>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace lumaro::testing {

struct CliRun
{
    int exitCode = -1;
    bool killed = false; // ended by a signal (the injected SIGKILL, or a crash)
    QByteArray out;
    QByteArray err;
    QString errText() const { return QString::fromUtf8(err); }
};

// One system call as strace saw it: the thread, the call's name, the whole line.
struct TracedCall
{
    QString thread;
    QString name;
    QString line;
};

// The system calls that change files or write them: the moments a kill can leave something half-done.
extern const QString kFileChangingCalls;

class CliSandbox
{
public:
    // HOME and the XDG homes of the command live below `root`, so its Trash and fav.db are its own.
    explicit CliSandbox(const QString& root);

    QString root() const { return m_root; }
    QString homeTrashFiles() const;
    QString favouritesDatabase() const;
    QString configFile() const;

    CliRun run(const QStringList& arguments, const QStringList& straceOptions = {}) const;
    // Every call of `calls` (strace -e trace= syntax) that a full run of the command makes, in order.
    QList<TracedCall> trace(const QStringList& arguments, const QString& calls = kFileChangingCalls) const;

    static bool canTrace();

private:
    QProcessEnvironment environment() const;
    QString m_root;
};

// strace options that kill the command with SIGKILL at the `nth` call of `name` made by one of its threads.
QStringList killAt(const QString& name, int nth);

} // namespace lumaro::testing
