// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/ModeStatePersistence.h"

#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "platform/QSettingsStore.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using namespace lumaro::browse;
using lumaro::platform::MemorySettingsStore;
using lumaro::platform::QSettingsStore;

TEST(ModeStatePersistence, RoundTripThroughTheSettingsFile)
{
    lumaro::testing::TempFolder folder;
    const QString file = folder.filePath(QStringLiteral("lumaro.conf"));
    ThumbnailCache cache;
    {
        LMRModeState state(&cache);
        state.setFolderPath(QStringLiteral("/photos"), QStringLiteral("/photos/day 1"), QStringLiteral("/photos"));
        state.setFolderBookmarkData(QByteArrayLiteral("{\"path\":\"/photos\"}"));
        state.setImageFiles({QStringLiteral("a.jpg"), QStringLiteral("b.jpg"), QStringLiteral("c.jpg")});
        state.select(2);
        state.setImagesPerRow(8);
        state.setProfessionalModeStyle(ProfessionalModeStyle::style2);
        state.setAnnotation(QStringLiteral("b.jpg"), ImageAnnotation{{QStringLiteral("red"), QStringLiteral("blue")}});
        state.hasRequestedPermissions = true;
        QSettingsStore store(file);
        ModeStatePersistence::save(state, store);
    }
    QSettingsStore store(file);
    // The style is stored 1-based.
    EXPECT_EQ(store.integer(QString::fromLatin1(settingsKeys::professionalModeStyle)), 2);

    LMRModeState next(&cache);
    next.setFolderPath(QStringLiteral("/photos"), QStringLiteral("/photos/day 1"), QStringLiteral("/photos"));
    next.setImageFiles({QStringLiteral("a.jpg"), QStringLiteral("b.jpg"), QStringLiteral("c.jpg")});
    ModeStatePersistence::load(next, store);
    EXPECT_EQ(next.authorizedDirectory(), QStringLiteral("/photos"));
    EXPECT_EQ(next.pathRefOfImage(), QStringLiteral("/photos/day 1"));
    EXPECT_EQ(next.originalFolderPath(), QStringLiteral("/photos"));
    EXPECT_EQ(next.folderBookmarkData(), QByteArrayLiteral("{\"path\":\"/photos\"}"));
    EXPECT_EQ(next.selectedImageIndex(), 2);
    EXPECT_EQ(next.imagesPerRow(), 8);
    EXPECT_EQ(next.professionalModeStyle(), ProfessionalModeStyle::style2);
    EXPECT_EQ(next.imageAnnotations().value(QStringLiteral("b.jpg")).colors,
              (QStringList{QStringLiteral("red"), QStringLiteral("blue")}));
    EXPECT_TRUE(next.hasRequestedPermissions);
}

struct StyleCase
{
    qint64 stored;
    ProfessionalModeStyle expected;
};

class StoredStyle : public ::testing::TestWithParam<StyleCase>
{
};

TEST_P(StoredStyle, IsReadBackBySubtractingOneAndBadValuesAreIgnored)
{
    MemorySettingsStore store;
    store.setInteger(QString::fromLatin1(settingsKeys::professionalModeStyle), GetParam().stored);
    ThumbnailCache cache;
    LMRModeState state(&cache);
    state.setProfessionalModeStyle(ProfessionalModeStyle::style2); // what a bad value must leave alone
    ModeStatePersistence::load(state, store);
    EXPECT_EQ(state.professionalModeStyle(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Values, StoredStyle,
                         ::testing::Values(StyleCase{1, ProfessionalModeStyle::style1},
                                           StyleCase{2, ProfessionalModeStyle::style2},
                                           StyleCase{0, ProfessionalModeStyle::style2},
                                           StyleCase{3, ProfessionalModeStyle::style2}));

TEST(ModeStatePersistence, AbsentFoldersRemoveTheirKeysAndNoSelectionWritesNone)
{
    MemorySettingsStore store;
    store.setString(QString::fromLatin1(settingsKeys::pathRefOfImage), QStringLiteral("/old"));
    store.setInteger(QString::fromLatin1(settingsKeys::selectedImageIndex), 4);
    ThumbnailCache cache;
    LMRModeState state(&cache);
    state.setFolderPath(QStringLiteral("/a"), std::nullopt, QStringLiteral("/a"));
    ModeStatePersistence::save(state, store);
    EXPECT_FALSE(store.contains(QString::fromLatin1(settingsKeys::pathRefOfImage)));
    EXPECT_EQ(store.integer(QString::fromLatin1(settingsKeys::selectedImageIndex)), 4); // untouched
    EXPECT_FALSE(store.contains(QString::fromLatin1(settingsKeys::hasRequestedPermissions)));
}

TEST(ModeStatePersistence, AStoredSelectionBeyondTheListIsNotApplied)
{
    MemorySettingsStore store;
    store.setInteger(QString::fromLatin1(settingsKeys::selectedImageIndex), 9);
    ThumbnailCache cache;
    LMRModeState state(&cache);
    state.setImageFiles({QStringLiteral("a.jpg")});
    ModeStatePersistence::load(state, store);
    EXPECT_EQ(state.selectedImageIndex(), std::nullopt);
}

TEST(ModeStatePersistence, AnnotationsComeBackOnlyIntoTheFolderTheyWereSavedFrom)
{
    // Two cards, the same names: card A's red IMG_0001.JPG must not turn card B's red.
    ThumbnailCache cache;
    MemorySettingsStore store;
    LMRModeState state(&cache);
    state.setFolderPath(QStringLiteral("/cards/A"), QStringLiteral("/cards/A"), QStringLiteral("/cards/A"));
    state.setImageFiles({QStringLiteral("IMG_0001.JPG")});
    state.setAnnotation(QStringLiteral("IMG_0001.JPG"), ImageAnnotation{{QStringLiteral("red")}});
    ModeStatePersistence::save(state, store);

    for (const QString folder : {QStringLiteral("/cards/B"), QStringLiteral("/cards/A")}) {
        // The folder keys now name `folder` (opening a folder records it); the annotations are still A's.
        for (const char* key : {settingsKeys::originalFolderPath, settingsKeys::authorizedDirectory,
                                settingsKeys::pathRefOfImage})
            store.setString(QString::fromLatin1(key), folder);
        LMRModeState next(&cache);
        next.setFolderPath(folder, folder, folder);
        next.setImageFiles({QStringLiteral("IMG_0001.JPG")});
        ModeStatePersistence::load(next, store);
        EXPECT_EQ(next.imageAnnotations().contains(QStringLiteral("IMG_0001.JPG")), folder.endsWith('A'))
            << qPrintable(folder);
    }
}
