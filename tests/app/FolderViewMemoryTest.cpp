// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FolderViewMemory.h"

#include "platform/fakes/MemorySettingsStore.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using lumaro::app::FolderViewMemory;
using lumaro::platform::MemorySettingsStore;

// A clock set ahead once leaves a full memory of folders "seen" later than now: the folder left now is still
// the one remembered, and the oldest of the others goes.
TEST(FolderViewMemory, TheFolderLeftNowIsKeptWhenTheOthersWereSeenInTheFuture)
{
    MemorySettingsStore store;
    QJsonObject full;
    const qint64 later = QDateTime::currentDateTime().addYears(50).toMSecsSinceEpoch();
    for (int i = 0; i < FolderViewMemory::maxFolders; ++i)
        full.insert(QStringLiteral("/p/%1").arg(i), QJsonObject{{QStringLiteral("seen"), double(later + i)}});
    store.setBytes(FolderViewMemory::settingsKey, QJsonDocument(full).toJson());
    FolderViewMemory memory(store);

    memory.remember(QStringLiteral("/home/u/roll 01"),
                    {QByteArray("geo"), 2, QStringLiteral("IMG 0001.JPG")});

    const auto view = memory.recall(QStringLiteral("/home/u/roll 01"));
    ASSERT_TRUE(view);
    EXPECT_EQ(view->geometry, QByteArray("geo"));
    EXPECT_EQ(view->mode, 2);
    EXPECT_EQ(view->selectedFile, QStringLiteral("IMG 0001.JPG"));
    EXPECT_FALSE(memory.recall(QStringLiteral("/p/0")));
    EXPECT_TRUE(memory.recall(QStringLiteral("/p/1")));
    EXPECT_EQ(QJsonDocument::fromJson(*store.bytes(FolderViewMemory::settingsKey)).object().size(),
              FolderViewMemory::maxFolders);
}
