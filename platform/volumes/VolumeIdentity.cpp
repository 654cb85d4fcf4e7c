// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/volumes/VolumeIdentity.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <blkid/blkid.h>

#include <memory>

namespace lumaro::platform {

namespace {

// udev's symlinks (/dev/disk/by-uuid/…) are readable by everyone; they are the desktop's own answer.
QString nameOfLinkTo(const QString& folder, const QString& device)
{
    const QString target = QFileInfo(device).canonicalFilePath();
    QDirIterator it(folder, QDir::System | QDir::Files | QDir::NoDotAndDotDot);
    while (it.hasNext()) {
        it.next();
        if (QFileInfo(it.filePath()).canonicalFilePath() == target)
            return it.fileName();
    }
    return {};
}

// Without udev (containers, minimal systems) the superblock itself is read, which needs read access to the
// device.
void probeSuperblock(VolumeIdentity& identity)
{
    using Probe = std::unique_ptr<blkid_struct_probe, decltype(&blkid_free_probe)>;
    const Probe probe(blkid_new_probe_from_filename(QFile::encodeName(identity.device).constData()),
                      &blkid_free_probe);
    if (!probe)
        return;
    blkid_probe_enable_superblocks(probe.get(), 1);
    blkid_probe_set_superblocks_flags(probe.get(), BLKID_SUBLKS_UUID | BLKID_SUBLKS_LABEL);
    if (blkid_do_safeprobe(probe.get()) != 0)
        return;
    const char* value = nullptr;
    if (identity.uuid.isEmpty() && blkid_probe_lookup_value(probe.get(), "UUID", &value, nullptr) == 0)
        identity.uuid = QString::fromUtf8(value);
    if (identity.label.isEmpty() && blkid_probe_lookup_value(probe.get(), "LABEL", &value, nullptr) == 0)
        identity.label = QString::fromUtf8(value);
}

} // namespace

QString VolumeIdentity::key() const
{
    if (!uuid.isEmpty())
        return QStringLiteral("volume:") + uuid + QLatin1Char('/') + label;
    return QStringLiteral("folder:") + rootPath;
}

VolumeIdentity VolumeIdentity::of(const QString& path)
{
    VolumeIdentity identity;
    const QString canonical = QFileInfo(path).canonicalFilePath();
    identity.rootPath = canonical.isEmpty() ? QDir::cleanPath(QFileInfo(path).absoluteFilePath()) : canonical;
    const QStorageInfo storage(identity.rootPath);
    if (!storage.isValid() || QDir::cleanPath(storage.rootPath()) != identity.rootPath)
        return identity;
    const QString device = QString::fromLocal8Bit(storage.device());
    if (!device.startsWith(QStringLiteral("/dev/")))
        return identity; // tmpfs, overlay, a network share: no superblock of its own to ask
    identity.device = device;
    identity.uuid = nameOfLinkTo(QStringLiteral("/dev/disk/by-uuid"), device);
    identity.label = storage.name();
    if (identity.uuid.isEmpty() || identity.label.isEmpty())
        probeSuperblock(identity);
    return identity;
}

} // namespace lumaro::platform
