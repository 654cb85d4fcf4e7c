// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TmpfsMount.h"

#include <QProcess>

namespace lumaro::testing {

namespace {

bool run(const QString& program, const QStringList& arguments, QString* output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(10000)) {
        *output = program + QStringLiteral(" did not run: ") + process.errorString();
        return false;
    }
    *output = QString::fromLocal8Bit(process.readAll()).trimmed();
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace

TmpfsMount::TmpfsMount()
{
    QString output;
    m_mounted = run(QStringLiteral("mount"),
                    {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                     QStringLiteral("size=64m"), QStringLiteral("tmpfs"), m_dir.path()},
                    &output);
    if (!m_mounted)
        m_whyNot = QStringLiteral("cannot mount a tmpfs as a second volume (needs root): ") + output;
}

TmpfsMount::~TmpfsMount()
{
    QString output;
    if (m_mounted)
        run(QStringLiteral("umount"), {QStringLiteral("-l"), m_dir.path()}, &output);
}

} // namespace lumaro::testing
