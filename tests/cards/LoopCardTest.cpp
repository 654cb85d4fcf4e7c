// SPDX-License-Identifier: GPL-3.0-or-later
// A real FAT card: an image made by mkfs.vfat, attached to a loop device and mounted where desktops mount
// cards.
#include "cards/CardImportJournal.h"
#include "cards/CardImporter.h"
#include "cards/CardScanner.h"
#include "platform/volumes/RemovableVolumeMonitor.h"
#include "platform/volumes/VolumeIdentity.h"

#include "tests/cards/CardLayouts.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <cstdlib>
#include <unistd.h>

using namespace lumaro::cards;
using lumaro::platform::MountedVolume;
using lumaro::platform::RemovableVolumeMonitor;
using lumaro::platform::VolumeIdentity;
using lumaro::testing::TempFolder;

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

// Made, attached and mounted in the constructor; unmounted and detached in the destructor. `reason` says why
// not.
class LoopCard
{
public:
    LoopCard()
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
                 {QStringLiteral("-C"), QStringLiteral("-n"), QStringLiteral("EOS_DIGITAL"),
                  QStringLiteral("-i"), QStringLiteral("1234ABCD"), image, QStringLiteral("16384")})) {
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

    // The kernel's vfat where it has one; else FAT through FUSE (fusefat), naming the device as FUSE mounts
    // of desktops (exfat-fuse, udisks2) do, so the mount table says which device holds the card.
    bool mount()
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
            m_reason = kernelFat ? "mount -t vfat failed"
                                 : "this kernel has no vfat and fusefat cannot mount the image";
        return m_mounted;
    }

    void unmount()
    {
        if (m_mounted)
            run(QStringLiteral("umount"), {m_mountPoint});
        m_mounted = false;
    }

    ~LoopCard()
    {
        unmount();
        if (!m_mountPoint.isEmpty())
            QDir().rmdir(m_mountPoint);
        if (!m_device.isEmpty())
            run(QStringLiteral("losetup"), {QStringLiteral("-d"), m_device});
    }

    bool isReady() const { return !m_mountPoint.isEmpty(); }
    const char* reason() const { return m_reason; }
    QString mountPoint() const { return m_mountPoint; }

private:
    TempFolder m_folder;
    QString m_device;
    QString m_mountPoint;
    bool m_mounted = false;
    const char* m_reason = "";
};

} // namespace

TEST(LoopMountedCard, IsAnnouncedKnownByItsUuidAndImportedOnlyOnce)
{
    LoopCard card;
    if (!card.isReady())
        GTEST_SKIP() << card.reason();
    RemovableVolumeMonitor monitor;
    QSignalSpy mounted(&monitor, &RemovableVolumeMonitor::volumeMounted);
    QSignalSpy unmounted(&monitor, &RemovableVolumeMonitor::volumeUnmounted);
    monitor.poll();
    if (!card.mount())
        GTEST_SKIP() << card.reason();
    monitor.poll();

    ASSERT_EQ(mounted.count(), 1);
    EXPECT_EQ(mounted.at(0).at(0).value<MountedVolume>().rootPath, card.mountPoint());
    const VolumeIdentity identity = VolumeIdentity::of(card.mountPoint());
    EXPECT_EQ(identity.uuid, QStringLiteral("1234-ABCD"));
    EXPECT_EQ(identity.label, QStringLiteral("EOS_DIGITAL"));

    const QDir root(card.mountPoint());
    ASSERT_TRUE(root.mkpath(QStringLiteral("DCIM/100CANON")) &&
                root.mkpath(QStringLiteral(".Trash-0/files")));
    QFile picture(root.filePath(QStringLiteral("DCIM/100CANON/IMG_0001.JPG")));
    ASSERT_TRUE(picture.open(QIODevice::WriteOnly));
    picture.write(lumaro::testing::jpegWithCamera("Canon", "Canon EOS R6"));
    picture.close();
    QFile trashed(root.filePath(QStringLiteral(".Trash-0/files/IMG_0002.CR3")));
    ASSERT_TRUE(trashed.open(QIODevice::WriteOnly));
    trashed.close();
    TempFolder work;
    TempFolder data;
    const QString store = data.filePath(QStringLiteral("cards.db"));
    const auto first = CardImportJournal::open(card.mountPoint(), nullptr, store);
    const NewFileInfo files = first->withoutImported(CardScanner::scan(card.mountPoint()));
    EXPECT_EQ(files.skippedEntries, QStringList{QStringLiteral(".Trash-0")});
    EXPECT_EQ(CardImporter::importFiles(files, work.path(), {}, first.get()).copiedCount, 1);

    // Out and back in: the same card, known by its UUID and label.
    card.unmount();
    monitor.poll();
    EXPECT_EQ(unmounted.count(), 1);
    ASSERT_TRUE(card.mount());
    const auto again = CardImportJournal::open(card.mountPoint(), nullptr, store);
    ASSERT_TRUE(again->rememberedCard().has_value());
    EXPECT_EQ(again->rememberedCard()->volumeUuid, QStringLiteral("1234-ABCD"));
    EXPECT_EQ(again->rememberedCard()->cameraModel, QStringLiteral("Canon EOS R6"));
    EXPECT_TRUE(again->withoutImported(CardScanner::scan(card.mountPoint())).isEmpty());
}
