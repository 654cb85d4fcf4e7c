// SPDX-License-Identifier: GPL-3.0-or-later
// Channels kept in the settings, and where their folders are now.
#include "library/ChannelStore.h"
#include "library/ChannelLocator.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace lumaro::library;
using lumaro::platform::MemorySettingsStore;
using lumaro::testing::TempFolder;

namespace {

QStringList namesOf(const ChannelStore& store)
{
    QStringList names;
    for (const Channel& channel : store.channels())
        names << channel.name;
    return names;
}

} // namespace

TEST(ChannelStore, EditsAreKeptInTheSettingsAndRefusalsChangeNothing)
{
    TempFolder folder;
    MemorySettingsStore settings;
    ChannelStore store(settings);
    ASSERT_EQ(store.add(folder.makeFolder(QStringLiteral("婚礼")), {}), std::nullopt);
    ASSERT_EQ(store.add(folder.makeFolder(QStringLiteral("b")), QStringLiteral("  Studio ")), std::nullopt);
    ASSERT_EQ(store.add(folder.makeFolder(QStringLiteral("c"))), std::nullopt);

    EXPECT_TRUE(store.add(folder.filePath(QStringLiteral("b/")), QStringLiteral("again")).has_value());
    EXPECT_TRUE(
        store.add(folder.filePath(QStringLiteral("c/..")) + QStringLiteral("/婚礼"), QStringLiteral("x"))
            .has_value());
    EXPECT_TRUE(store.add(folder.makeFolder(QStringLiteral("d")), QStringLiteral("Studio")).has_value());
    EXPECT_TRUE(store.add(folder.filePath(QStringLiteral("missing"))).has_value());
    EXPECT_TRUE(store.add(folder.write(QStringLiteral("file.jpg"))).has_value());
    EXPECT_TRUE(store.rename(0, QStringLiteral("c")).has_value());
    EXPECT_TRUE(store.rename(0, QStringLiteral("   ")).has_value());
    EXPECT_TRUE(store.move(0, 3).has_value());
    EXPECT_TRUE(store.remove(-1).has_value());
    EXPECT_EQ(namesOf(store),
              (QStringList{QStringLiteral("婚礼"), QStringLiteral("Studio"), QStringLiteral("c")}));

    ASSERT_EQ(store.move(2, 0), std::nullopt);
    ASSERT_EQ(store.rename(1, QStringLiteral("Wedding")), std::nullopt);
    ASSERT_EQ(store.remove(2), std::nullopt);
    // A second store over the same settings (the command line, the next start) sees the same list.
    const ChannelStore again(settings);
    EXPECT_EQ(namesOf(again), (QStringList{QStringLiteral("c"), QStringLiteral("Wedding")}));
    EXPECT_EQ(again.indexOf(folder.filePath(QStringLiteral("婚礼"))), 1);
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("b")))); // removing a channel leaves its folder
}

TEST(ChannelStore, AStoredListThatCannotBeReadIsNeverWrittenOver)
{
    TempFolder folder;
    MemorySettingsStore settings;
    settings.setBytes(ChannelStore::settingsKey, QByteArrayLiteral("[{\"name\": \"half"));
    ChannelStore store(settings);
    EXPECT_TRUE(store.channels().isEmpty());
    EXPECT_TRUE(store.add(folder.path()).has_value());
    EXPECT_EQ(settings.bytes(ChannelStore::settingsKey), QByteArrayLiteral("[{\"name\": \"half"));
}

TEST(ChannelLocator, AFolderGoneOrMovedIsUnavailableAndSaysWhy)
{
    TempFolder folder;
    MemorySettingsStore settings;
    ChannelStore store(settings);
    ASSERT_EQ(store.add(folder.makeFolder(QStringLiteral("shoot"))), std::nullopt);
    ChannelLocator locator([] { return QList<lumaro::platform::MountedVolume>{}; });
    EXPECT_TRUE(locator.locate(store.channels().at(0)).isAvailable());

    ASSERT_TRUE(QDir(folder.path()).rename(QStringLiteral("shoot"), QStringLiteral("moved")));
    const ChannelPlace place = locator.locate(store.channels().at(0));
    EXPECT_EQ(place.status, ChannelStatus::folderMissing);
    EXPECT_FALSE(place.reason.isEmpty());

    ASSERT_TRUE(QDir(folder.path()).rename(QStringLiteral("moved"), QStringLiteral("shoot")));
    EXPECT_TRUE(locator.locate(store.channels().at(0)).isAvailable());
}

TEST(ChannelLocator, ACardChannelIsNeverFollowedOffItsCard)
{
    // A stored card channel whose folder lies outside the card's root (an edited list): with the card in,
    // the folder beside the card's mount path must not be what opens.
    TempFolder folder;
    const QString card = QFileInfo(folder.makeFolder(QStringLiteral("card"))).canonicalFilePath();
    folder.makeFolder(QStringLiteral("card/DCIM"));
    folder.makeFolder(QStringLiteral("outside"));
    ChannelLocator locator([&] {
        lumaro::platform::MountedVolume volume;
        volume.rootPath = card;
        return QList<lumaro::platform::MountedVolume>{volume};
    });
    Channel channel;
    channel.name = QStringLiteral("card");
    channel.volumeKey = QStringLiteral("folder:") + card;
    channel.volumeRoot = card;
    channel.path = card + QStringLiteral("/DCIM");
    EXPECT_TRUE(locator.locate(channel).isAvailable());
    for (const QString& path : QStringList{card + QStringLiteral("/../outside"), QFileInfo(card).path()}) {
        channel.path = path;
        const ChannelPlace place = locator.locate(channel);
        EXPECT_EQ(place.status, ChannelStatus::folderMissing)
            << path.toStdString() << " -> " << place.path.toStdString();
    }
}
