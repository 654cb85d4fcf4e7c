// SPDX-License-Identifier: GPL-3.0-or-later
// The waterfall's heart and type buttons and the "已收藏" panel, against a real store in a temporary folder.
#include "app/FavouriteMasonryView.h"
#include "app/FavouriteTileButtons.h"
#include "app/FavouriteToggle.h"
#include "app/FavouritesPanel.h"
#include "app/ToolHost.h"

#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailLoader.h"
#include "library/FavourManager.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace lumaro;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

class FakeHost : public app::ToolHost
{
public:
    browse::LMRModeState& modeState() override { return m_state; }
    void addToolPanel(const QString&, QWidget*) override {}
    void reloadCurrentFolder() override {}
    QWidget* dialogParent() override { return nullptr; }

private:
    browse::LMRModeState m_state{nullptr};
};

class FavouriteButtonsTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(manager.open(folder.filePath(QStringLiteral("fav.db"))));
        photo = folder.filePath(QStringLiteral("shoot/IMG_0001.jpg"));
    }

    void refuseWrites()
    {
        library::LocalDatabaseManager other;
        ASSERT_TRUE(other.open(folder.filePath(QStringLiteral("fav.db"))));
        for (const char* event : {"INSERT", "UPDATE"})
            ASSERT_TRUE(other.execute(QStringLiteral("CREATE TRIGGER refuse_%1 BEFORE %1 ON favourites "
                                                     "BEGIN SELECT RAISE(ABORT, 'disk full'); END;")
                                          .arg(QString::fromLatin1(event))));
    }

    TempFolder folder;
    platform::MemorySettingsStore settings;
    double now = 100;
    library::FavourManager manager{settings, [this] { return now; }};
    QString photo;
};

} // namespace

TEST_F(FavouriteButtonsTest, TheHeartFlipsBeforeTheSaveAndStaysWhenSaved)
{
    app::FavouriteToggle toggle(manager);
    QList<bool> seen;
    QObject::connect(&toggle, &app::FavouriteToggle::markChanged, [&](const QString& path) {
        seen << toggle.mark(path).isFavour;
        // The first notice comes before anything is written.
        if (seen.size() == 1) {
            EXPECT_FALSE(manager.find(path).record);
        }
    });
    LogCapture log;
    EXPECT_TRUE(toggle.toggleHeart(photo));
    EXPECT_TRUE(log.contains(QStringLiteral("FavouriteToggle - ❤️ [btn-left] 切换收藏: ") + photo));
    ASSERT_FALSE(seen.isEmpty());
    EXPECT_TRUE(seen.first());
    EXPECT_TRUE(toggle.mark(photo).isFavour);
    EXPECT_TRUE(manager.find(photo).record->isFavour);
}

TEST_F(FavouriteButtonsTest, AHeartThatCannotBeSavedRollsBack)
{
    app::FavouriteToggle toggle(manager);
    refuseWrites();
    QList<bool> seen;
    QObject::connect(&toggle, &app::FavouriteToggle::markChanged,
                     [&](const QString& path) { seen << toggle.mark(path).isFavour; });
    LogCapture log;
    EXPECT_FALSE(toggle.toggleHeart(photo));
    EXPECT_EQ(seen, (QList<bool>{true, false}));
    EXPECT_FALSE(toggle.mark(photo).isFavour);
    EXPECT_TRUE(log.contains(QStringLiteral("FavouriteToggle - ❌ [btn-left] 保存收藏状态失败，回滚状态: ") + photo));
}

TEST_F(FavouriteButtonsTest, ATypeThatCannotBeSavedRollsBackToThePreviousType)
{
    app::FavouriteToggle toggle(manager);
    ASSERT_TRUE(toggle.chooseType(photo, library::FavourType::a));
    refuseWrites();
    LogCapture log;
    EXPECT_FALSE(toggle.chooseType(photo, library::FavourType::sss));
    EXPECT_TRUE(log.contains(QStringLiteral("FavouriteToggle - 🏷️ [btn-middle] 选择类型: SSS")));
    EXPECT_EQ(toggle.mark(photo).type, library::FavourType::a);
    EXPECT_FALSE(toggle.clearType(photo));
    EXPECT_TRUE(log.contains(QStringLiteral("FavouriteToggle - 🏷️ [btn-middle] 清除类型: ") + photo));
    EXPECT_EQ(toggle.mark(photo).type, library::FavourType::a);
}

TEST_F(FavouriteButtonsTest, AChangeMadeElsewhereReachesTheTile)
{
    app::FavouriteToggle toggle(manager);
    ASSERT_TRUE(manager.setType(photo, library::FavourType::nice));
    EXPECT_EQ(toggle.mark(photo), (app::FavouriteToggle::Mark{true, library::FavourType::nice}));
}

TEST_F(FavouriteButtonsTest, AClickOnTheHeartTogglesAndElsewhereIsLeftToTheTile)
{
    app::FavouriteToggle toggle(manager);
    const QRect cell(0, 0, 200, 150);
    EXPECT_FALSE(app::FavouriteTileButtons::click(toggle, photo, cell, cell.center(), nullptr));
    EXPECT_FALSE(toggle.mark(photo).isFavour);
    EXPECT_TRUE(app::FavouriteTileButtons::click(toggle, photo, cell, app::FavouriteTileButtons::heartRect(cell).center(),
                                                 nullptr));
    EXPECT_TRUE(toggle.mark(photo).isFavour);
    EXPECT_TRUE(app::FavouriteTileButtons::heartRect(QRect(0, 0, 30, 20)).isNull());
}

TEST_F(FavouriteButtonsTest, ThePanelListsFavouritesNewestChangeFirst)
{
    FakeHost host;
    app::FavouritesPanel panel(host, manager);
    panel.show();
    const QString a = folder.filePath(QStringLiteral("a.jpg")), b = folder.filePath(QStringLiteral("b.jpg")),
                  c = folder.filePath(QStringLiteral("c.jpg"));
    for (const QString& path : {a, b, c}) {
        now += 1;
        ASSERT_TRUE(manager.setFavour(path, true));
    }
    now += 1;
    ASSERT_TRUE(manager.setType(a, library::FavourType::heart));
    now += 1;
    ASSERT_TRUE(manager.setFavour(b, false));
    EXPECT_EQ(panel.shownPaths(), (QStringList{a, c}));
}

TEST_F(FavouriteButtonsTest, TheWaterfallHeartMarksWithoutSelectingAndTheRestOfTheTileSelects)
{
    const QString shoot = folder.makeFolder(QStringLiteral("shoot"));
    for (const char* name : {"IMG_0001.jpg", "IMG_0002.jpg", "IMG_0003.jpg"})
        folder.writePicture(QStringLiteral("shoot/") + QString::fromLatin1(name), {400, 300});
    browse::LMRModeState state;
    browse::ThumbnailLoader loader(browse::ThumbnailCache::shared());
    state.setFolderPath(shoot, shoot, shoot);
    state.setImageFiles({QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg"), QStringLiteral("IMG_0003.jpg")});
    state.clearSelection();
    app::FavouriteMasonryView view(state, loader, manager);
    view.resize(900, 600);
    view.show();
    ASSERT_TRUE(lumaro::testing::waitUntil([&] { return !view.viewportRect(1).isEmpty(); }));

    const QRect cell = view.viewportRect(1);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, app::FavouriteTileButtons::heartRect(cell).center());
    const QString second = shoot + QStringLiteral("/IMG_0002.jpg");
    EXPECT_TRUE(view.favourites().mark(second).isFavour);
    EXPECT_TRUE(manager.find(second).record->isFavour);
    EXPECT_FALSE(state.selectedImageIndex().has_value());

    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(state.selectedImageIndex(), 1);
    EXPECT_TRUE(view.favourites().mark(second).isFavour);
}

TEST_F(FavouriteButtonsTest, AHiddenPanelCatchesUpWhenShown)
{
    FakeHost host;
    app::FavouritesPanel panel(host, manager);
    const QString a = folder.filePath(QStringLiteral("a.jpg"));
    ASSERT_TRUE(manager.setFavour(a, true));
    EXPECT_TRUE(panel.shownPaths().isEmpty());
    panel.show();
    EXPECT_EQ(panel.shownPaths(), QStringList{a});
}
