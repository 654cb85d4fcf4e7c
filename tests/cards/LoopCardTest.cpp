// SPDX-License-Identifier: GPL-3.0-or-later
// A real FAT card: an image made by mkfs.vfat, attached to a loop device and mounted where desktops mount
// cards.
#include "cards/CardImportJournal.h"
#include "cards/CardImporter.h"
#include "cards/CardScanner.h"
#include "platform/volumes/RemovableVolumeMonitor.h"
#include "platform/volumes/VolumeIdentity.h"

#include "tests/cards/CardLayouts.h"
#include "tests/support/LoopCard.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace lumaro::cards;
using lumaro::platform::MountedVolume;
using lumaro::platform::RemovableVolumeMonitor;
using lumaro::platform::VolumeIdentity;
using lumaro::testing::LoopCard;
using lumaro::testing::TempFolder;

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
