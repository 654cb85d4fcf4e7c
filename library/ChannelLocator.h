// SPDX-License-Identifier: GPL-3.0-or-later
// Where a channel's folder is now, or why it cannot be opened (its card is not in, the folder is gone).
#pragma once

#include "library/Channel.h"
#include "platform/volumes/RemovableVolumeMonitor.h"

#include <QHash>
#include <QList>
#include <QString>

namespace lumaro::library {

enum class ChannelStatus
{
    available,
    cardNotMounted,
    folderMissing,
    unreadable
};

struct ChannelPlace
{
    ChannelStatus status = ChannelStatus::folderMissing;
    QString path;   // where the folder is now (a card may come back under another mount path)
    QString reason; // empty when available; otherwise in the user's words

    bool isAvailable() const { return status == ChannelStatus::available; }
};

// A channel on a card is found on whichever mounted volume carries the card's identity, at the same place
// below its root: re-inserting a card in another reader, mounted elsewhere, brings the channel back. A card
// channel is never taken from the empty mount-point folder a card leaves behind. Blocking (reads the mount
// table and volume superblocks), so the window calls it off the main thread; one locator reads the volumes
// once, so make a new one after a mount event.
class ChannelLocator
{
public:
    explicit ChannelLocator(platform::RemovableVolumeMonitor::VolumeSource volumes =
                                platform::RemovableVolumeMonitor::systemRemovableVolumes());

    ChannelPlace locate(const Channel& channel);
    // Records the removable volume that holds `channel.path`, if any (called when a channel is made).
    static void noteVolume(Channel& channel);
    static QString statusName(ChannelStatus status); // "available", "card-not-mounted", …

private:
    // Mount path → identity key of every removable volume mounted now; read on first use.
    const QHash<QString, QString>& mountedKeys();
    ChannelPlace locateOnCard(const Channel& channel, const QString& path);

    platform::RemovableVolumeMonitor::VolumeSource m_volumes;
    std::optional<QHash<QString, QString>> m_keys;
};

} // namespace lumaro::library
