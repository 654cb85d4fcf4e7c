// SPDX-License-Identifier: GPL-3.0-or-later
// A channel: a named shortcut to a folder the photographer works in.
#pragma once

#include <QByteArray>
#include <QString>

namespace lumaro::library {

// `token` is the folder's access token (platform::FolderAccessToken). When the folder lay on a removable
// volume (a memory card, a USB disk) when it was added, `volumeKey` names that volume
// (VolumeIdentity::key()), `volumeRoot` is where it was mounted then and `volumeLabel` what the user calls
// it; all three are empty for a folder on a fixed disk.
struct Channel
{
    QString name;
    QString path;
    QByteArray token;
    QString volumeKey;
    QString volumeRoot;
    QString volumeLabel;

    bool operator==(const Channel&) const = default;
};

} // namespace lumaro::library
