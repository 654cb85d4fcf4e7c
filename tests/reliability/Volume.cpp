// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/reliability/Volume.h"

#include <QDir>

#include <cerrno>
#include <cstring>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace lumaro::testing {

bool Volume::canMount(QString* reason)
{
    static QString why;
    static const bool possible = [] {
        if (::geteuid() != 0) {
            why = QStringLiteral("mounting needs root");
            return false;
        }
        // A namespace of our own: every mount below is private to this process and its children.
        if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
            why =
                QStringLiteral("no private mount namespace: ") + QString::fromLocal8Bit(std::strerror(errno));
            return false;
        }
        return true;
    }();
    if (reason)
        *reason = why;
    return possible;
}

Volume::Volume(const QString& path, qint64 bytes) : m_path(path)
{
    QDir().mkpath(path);
    const QByteArray options = "size=" + QByteArray::number(bytes) + ",mode=0755";
    m_mounted = canMount(nullptr) &&
                ::mount("tmpfs", path.toLocal8Bit().constData(), "tmpfs", 0, options.constData()) == 0;
}

Volume::~Volume()
{
    if (m_mounted)
        ::umount2(m_path.toLocal8Bit().constData(), MNT_DETACH);
}

bool Volume::makeReadOnly()
{
    return m_mounted &&
           ::mount("tmpfs", m_path.toLocal8Bit().constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

} // namespace lumaro::testing
