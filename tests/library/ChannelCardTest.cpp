// SPDX-License-Identifier: GPL-3.0-or-later
// A channel on a real FAT card: unavailable while the card is out, back when it is mounted again.
#include "library/ChannelLocator.h"
#include "library/ChannelStore.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "tests/support/LoopCard.h"

#include <QDir>

#include <gtest/gtest.h>

using namespace lumaro::library;

TEST(ChannelOnACard, IsUnavailableWhileUnmountedAndComesBackWhenMountedAgain)
{
    lumaro::testing::LoopCard card;
    if (!card.isReady() || !card.mount())
        GTEST_SKIP() << card.reason();
    ASSERT_TRUE(QDir(card.mountPoint()).mkpath(QStringLiteral("DCIM/100CANON")));
    lumaro::platform::MemorySettingsStore settings;
    ChannelStore store(settings);
    ASSERT_EQ(store.add(card.mountPoint() + QStringLiteral("/DCIM/100CANON")), std::nullopt);
    ASSERT_EQ(store.add(card.mountPoint(), QStringLiteral("card root")), std::nullopt);
    const QList<Channel> channels = store.channels();
    EXPECT_EQ(channels.at(0).volumeLabel, QStringLiteral("EOS_DIGITAL"));

    EXPECT_TRUE(ChannelLocator().locate(channels.at(0)).isAvailable());
    card.unmount();
    for (const Channel& channel : channels) {
        // The empty mount-point folder the card leaves behind is not the card.
        const ChannelPlace place = ChannelLocator().locate(channel);
        EXPECT_EQ(place.status, ChannelStatus::cardNotMounted) << channel.name.toStdString();
        EXPECT_TRUE(place.reason.contains(QStringLiteral("EOS_DIGITAL")));
    }
    ASSERT_TRUE(card.mount());
    for (const Channel& channel : channels)
        EXPECT_TRUE(ChannelLocator().locate(channel).isAvailable()) << channel.name.toStdString();
}
