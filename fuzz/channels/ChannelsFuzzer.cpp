// SPDX-License-Identifier: GPL-3.0-or-later
// The channels list in the settings ("ChannelStore_Channels") as another version or a hand edit may leave it.
// "@CARD@" in the input stands for a mounted card (a folder the locator is told is a removable volume, with
// "DCIM" inside and the folder "outside" beside it). A list that cannot be read is never written over; a
// refused edit changes no byte; a list that is read survives being written again unchanged; a card channel is
// never found off its card.
#include "fuzz/FuzzScratch.h"
#include "library/ChannelLocator.h"
#include "library/ChannelStore.h"
#include "platform/FolderAccessToken.h"
#include "platform/fakes/MemorySettingsStore.h"

#include <QDir>
#include <QFileInfo>

using namespace lumaro;

namespace {

const QString& card()
{
    static const QString path = [] {
        fuzz::FuzzScratch::write(QStringLiteral("card/DCIM/100CANON/IMG_0001.JPG"), "jpeg");
        fuzz::FuzzScratch::write(QStringLiteral("outside/notes.txt"), "not on the card");
        return QFileInfo(fuzz::FuzzScratch::path(QStringLiteral("card"))).canonicalFilePath();
    }();
    return path;
}

bool isOnCard(const QString& path)
{
    return path == card() || path.startsWith(card() + QLatin1Char('/'));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray stored = fuzz::bytesOf(data, size);
    stored.replace("@CARD@", card().toUtf8());
    platform::MemorySettingsStore settings;
    settings.setBytes(library::ChannelStore::settingsKey, stored);
    library::ChannelStore store(settings);
    const QList<library::Channel> channels = store.channels();

    library::ChannelLocator locator([] {
        platform::MountedVolume volume;
        volume.rootPath = card();
        return QList<platform::MountedVolume>{volume};
    });
    for (const library::Channel& channel : channels) {
        fuzz::require(!channel.name.isEmpty() && !channel.path.isEmpty(),
                      "a channel has a name and a folder");
        (void)store.indexOf(channel.name);
        (void)platform::FolderAccessToken::resolve(channel.token);
        const library::ChannelPlace place = locator.locate(channel);
        if (channel.volumeKey == QStringLiteral("folder:") + card() && place.isAvailable())
            fuzz::require(isOnCard(place.path), "a card channel is found on its card only");
    }

    // An edit that cannot be made (no such channel) changes nothing, whatever the list holds.
    fuzz::require(store.remove(int(channels.size())).has_value(), "removing past the end is refused");
    fuzz::require(settings.bytes(library::ChannelStore::settingsKey) == stored,
                  "a refused edit writes nothing");
    if (channels.isEmpty())
        return 0;
    // Moving a channel onto itself writes the list back as read.
    fuzz::require(!store.move(0, 0).has_value(), "a list that was read can be edited");
    fuzz::require(store.channels() == channels, "a list written again reads back unchanged");
    return 0;
}
