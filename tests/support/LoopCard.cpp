// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/LoopCard.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <cstdlib>
#include <unistd.h>

namespace lumaro::testing {

namespace {

bool run(const QString& program, const QStringList& arguments, QString* output = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return false;
    if (output)
        *output = QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
    return true;
}

} // namespace

LoopCard::LoopCard()
{
    if (::geteuid() != 0) {
        m_reason = "mounting a loop device needs root";
        return;
    }
    if (QStandardPaths::findExecutable(QStringLiteral("mkfs.vfat"),
                                       {QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")})
            .isEmpty()) {
        m_reason = "mkfs.vfat is missing (dosfstools)";
        return;
    }
    const QString image = m_folder.filePath(QStringLiteral("card.img"));
    if (!run(QStringLiteral("mkfs.vfat"),
             {QStringLiteral("-C"), QStringLiteral("-n"), QStringLiteral("EOS_DIGITAL"), QStringLiteral("-i"),
              QStringLiteral("1234ABCD"), image, QStringLiteral("16384")})) {
        m_reason = "mkfs.vfat failed";
        return;
    }
    if (!run(QStringLiteral("losetup"), {QStringLiteral("--find"), QStringLiteral("--show"), image},
             &m_device)) {
        m_reason = "no loop device can be attached here";
        return;
    }
    QByteArray mountPoint("/mnt/lumaro-card-XXXXXX");
    if (!::mkdtemp(mountPoint.data())) {
        m_reason = "cannot make a mount point in /mnt";
        return;
    }
    m_mountPoint = QString::fromLocal8Bit(mountPoint);
}

// The kernel's vfat where it has one; else FAT through FUSE (fusefat), naming the device as FUSE mounts of
// desktops (exfat-fuse, udisks2) do, so the mount table says which device holds the card.
bool LoopCard::mount()
{
    QFile table(QStringLiteral("/proc/filesystems"));
    const bool kernelFat = table.open(QIODevice::ReadOnly) && table.readAll().contains("\tvfat\n");
    if (kernelFat)
        m_mounted = run(QStringLiteral("mount"),
                        {QStringLiteral("-t"), QStringLiteral("vfat"), m_device, m_mountPoint});
    else if (!QStandardPaths::findExecutable(QStringLiteral("fusefat")).isEmpty() &&
             QFile::exists(QStringLiteral("/dev/fuse")))
        m_mounted =
            run(QStringLiteral("fusefat"),
                {QStringLiteral("-o"), QStringLiteral("rw+,fsname=") + m_device, m_device, m_mountPoint});
    if (!m_mounted)
        m_reason =
            kernelFat ? "mount -t vfat failed" : "this kernel has no vfat and fusefat cannot mount the image";
    return m_mounted;
}

void LoopCard::unmount()
{
    if (m_mounted)
        run(QStringLiteral("umount"), {m_mountPoint});
    m_mounted = false;
}

LoopCard::~LoopCard()
{
    unmount();
    if (!m_mountPoint.isEmpty())
        QDir().rmdir(m_mountPoint);
    if (!m_device.isEmpty())
        run(QStringLiteral("losetup"), {QStringLiteral("-d"), m_device});
}

} // namespace lumaro::testing
