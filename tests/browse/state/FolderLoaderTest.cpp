// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/FolderLoader.h"

#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "platform/IndexFileTagStore.h"
#include "platform/XattrTagStore.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace lumaro::browse;
using lumaro::testing::TempFolder;
using lumaro::testing::waitUntil;

TEST(FolderLoader, FillsTheStateAndSelectsTheFirstPicture)
{
    TempFolder folder;
    folder.write(QStringLiteral("b.jpg"));
    folder.write(QStringLiteral("a.jpg"));
    ThumbnailCache cache;
    LMRModeState state(&cache);
    FolderLoader loader(state, QStringLiteral("LMRMode1View"));
    QSignalSpy loaded(&loader, &FolderLoader::loaded);
    lumaro::testing::LogCapture log;

    state.setFolderPath(folder.path(), folder.path(), folder.path());
    loader.load(folder.path());
    EXPECT_TRUE(state.isLoadingImages);
    ASSERT_TRUE(waitUntil([&] { return loaded.count() == 1; }));
    EXPECT_EQ(state.imageFiles(), (QStringList{QStringLiteral("a.jpg"), QStringLiteral("b.jpg")}));
    EXPECT_EQ(state.selectedImageIndex(), 0);
    EXPECT_FALSE(state.isLoadingImages);
    EXPECT_FALSE(state.isBulkListUpdate);
    EXPECT_TRUE(log.contains(QStringLiteral("LMRMode1View - 选择第一张图像作为预览: a.jpg")));
    EXPECT_TRUE(log.contains(QStringLiteral("BrowseAreaLoadingService - 首图: a.jpg")));
}

TEST(FolderLoader, DropsAResultWhoseFolderIsNoLongerShown)
{
    TempFolder first;
    first.write(QStringLiteral("old.jpg"));
    TempFolder second;
    ThumbnailCache cache;
    LMRModeState state(&cache);
    FolderLoader loader(state, QStringLiteral("LMRMode2View"));
    QSignalSpy dropped(&loader, &FolderLoader::dropped);
    lumaro::testing::LogCapture log;

    state.setFolderPath(first.path(), first.path(), first.path());
    loader.load(first.path());
    // The user picks another folder before the listing of the first comes back.
    state.setFolderPath(second.path(), second.path(), second.path());
    ASSERT_TRUE(waitUntil([&] { return dropped.count() == 1; }));
    EXPECT_TRUE(state.imageFiles().isEmpty());
    EXPECT_TRUE(log.contains(QStringLiteral("LMRMode2View - 文件夹路径已改变，取消加载")));
}

TEST(FolderLoader, OnlyTheNewestOfTwoLoadsOfOneFolderApplies)
{
    TempFolder folder;
    folder.write(QStringLiteral("a.jpg"));
    ThumbnailCache cache;
    LMRModeState state(&cache);
    FolderLoader loader(state, QStringLiteral("LMRMode1View"));
    QSignalSpy loaded(&loader, &FolderLoader::loaded);
    QSignalSpy dropped(&loader, &FolderLoader::dropped);
    state.setFolderPath(folder.path(), folder.path(), folder.path());
    loader.load(folder.path());
    loader.load(folder.path());
    ASSERT_TRUE(waitUntil([&] { return loaded.count() + dropped.count() == 2; }));
    EXPECT_EQ(loaded.count(), 1);
    EXPECT_EQ(dropped.count(), 1);
}

TEST(FolderLoader, NoFolderIsLoggedAndNothingStarts)
{
    ThumbnailCache cache;
    LMRModeState state(&cache);
    FolderLoader loader(state, QStringLiteral("LMRMode1View"));
    lumaro::testing::LogCapture log;
    loader.load(QString());
    EXPECT_FALSE(state.isLoadingImages);
    EXPECT_TRUE(log.contains(QStringLiteral("LMRMode1View - 没有选择文件夹路径")));
}

TEST(FolderLoader, ReadsEveryPicturesTagsFromDiskAndAgainOnReload)
{
    // Tags another program wrote before the folder opened show; a reload (F5) shows what changed meanwhile.
    // The same through the extended attribute and through _index/ as on a FAT card.
    for (const bool onFat : {false, true}) {
        TempFolder folder;
        folder.write(QStringLiteral("a.jpg"));
        folder.write(QStringLiteral("b.jpg"));
        lumaro::platform::IndexFileTagStore cardStore;
        lumaro::platform::XattrTagStore store(&cardStore, [onFat](const QString&) { return onFat; });
        if (!store.setTags(folder.filePath(QStringLiteral("b.jpg")),
                           {QStringLiteral("Urlaub"), QStringLiteral("red")}))
            GTEST_SKIP() << "no user extended attributes on this file system";
        ThumbnailCache cache;
        LMRModeState state(&cache);
        FolderLoader loader(state, QStringLiteral("LMRMode1View"), nullptr, nullptr, &store);
        QSignalSpy tagged(&loader, &FolderLoader::tagsLoaded);
        state.setFolderPath(folder.path(), folder.path(), folder.path());
        loader.load(folder.path());
        ASSERT_TRUE(waitUntil([&] { return tagged.count() == 1; })) << "FAT: " << onFat;
        EXPECT_EQ(state.imageAnnotations().value(QStringLiteral("b.jpg")).colors,
                  QStringList{QStringLiteral("red")});
        EXPECT_EQ(state.fileTags().value(QStringLiteral("b.jpg")),
                  (QStringList{QStringLiteral("Urlaub"), QStringLiteral("red")}));
        EXPECT_FALSE(state.imageAnnotations().contains(QStringLiteral("a.jpg")));

        ASSERT_TRUE(store.setTags(folder.filePath(QStringLiteral("a.jpg")), {QStringLiteral("blue")}));
        ASSERT_TRUE(store.setTags(folder.filePath(QStringLiteral("b.jpg")), {}));
        loader.load(folder.path());
        ASSERT_TRUE(waitUntil([&] { return tagged.count() == 2; }));
        EXPECT_EQ(state.imageAnnotations().value(QStringLiteral("a.jpg")).colors,
                  QStringList{QStringLiteral("blue")});
        EXPECT_FALSE(state.imageAnnotations().contains(QStringLiteral("b.jpg")));
        EXPECT_FALSE(state.fileTags().contains(QStringLiteral("b.jpg")));
    }
}
