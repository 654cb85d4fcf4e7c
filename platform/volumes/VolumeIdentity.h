// SPDX-License-Identifier: GPL-3.0-or-later
// Which volume a path lies on, told apart from every other card: its file-system UUID and label.
#pragma once

#include <QString>

namespace lumaro::platform {

// A FAT card's UUID is its 32-bit volume serial, written when the camera formats it; the label
// ("EOS_DIGITAL") is the camera's too. Together they survive re-inserting the card in another reader or under
// another mount path. A path that is not the root of a mounted volume (a copied card tree, a folder) is known
// by its own path instead. Thread-safe, blocking (reads the mount table and, where allowed, the device's
// superblock).
struct VolumeIdentity
{
    QString rootPath; // the mount path, or the folder itself
    QString device;   // "/dev/sdb1"; empty for a folder
    QString uuid;     // empty when unknown
    QString label;

    // The stable key a card is remembered by: "volume:" UUID "/" label, else "folder:" and the canonical
    // path.
    QString key() const;

    static VolumeIdentity of(const QString& path);
};

} // namespace lumaro::platform
