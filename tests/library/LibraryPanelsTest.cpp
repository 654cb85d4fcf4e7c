// SPDX-License-Identifier: GPL-3.0-or-later
// The channels sidebar, folder cards, the waterfall's folder map, the favourites waterfall and the bundle
// panel, offscreen on real folders.
#include "app/ChannelsPanel.h"
#include "app/FavouriteMasonryView.h"
#include "app/FavouriteToggle.h"
#include "app/FavouritesPanel.h"
#include "app/FolderCardList.h"
#include "app/FolderMapView.h"
#include "app/PictureListWaterfall.h"
#include "app/PictureOpener.h"
#include "app/RepertoirePanel.h"
#include "app/ToolHost.h"

#include "browse/state/LMRModeState.h"
#include "library/ChannelStore.h"
#include "library/FavourManager.h"
#include "library/RepertoireStore.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "tests/support/TempFolder.h"

#include <QListWidget>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumaro;
using lumaro::testing::TempFolder;
using lumaro::testing::waitUntil;

namespace {

class Host : public app::ToolHost, public app::PictureOpener
{
public:
    browse::LMRModeState& modeState() override { return state; }
    void addToolPanel(const QString&, QWidget*) override {}
    void reloadCurrentFolder() override {}
    QWidget* dialogParent() override { return nullptr; }
    void openPicture(const QString& path) override { opened << path; }

    browse::LMRModeState state{nullptr};
    QStringList opened;
};

} // namespace

TEST(ChannelsPanel, ShowsWhyAChannelIsUnavailableOpensTheOthersAndReordersThroughTheStore)
{
    TempFolder folder;
    platform::MemorySettingsStore settings;
    library::ChannelStore store(settings);
    const QString kept = folder.makeFolder(QStringLiteral("kept"));
    ASSERT_EQ(store.add(kept), std::nullopt);
    ASSERT_EQ(store.add(folder.makeFolder(QStringLiteral("gone"))), std::nullopt);
    ASSERT_TRUE(QDir(folder.filePath(QStringLiteral("gone"))).removeRecursively());
    browse::LMRModeState state(nullptr);
    app::ChannelsPanel panel(state, store, nullptr);
    QSignalSpy opened(&panel, &app::ChannelsPanel::openRequested);
    ASSERT_TRUE(waitUntil([&] { return panel.places().size() == 2; }));
    EXPECT_TRUE(panel.places().at(0).isAvailable());
    EXPECT_EQ(panel.places().at(1).status, library::ChannelStatus::folderMissing);

    panel.openRow(1);
    EXPECT_TRUE(opened.isEmpty());
    EXPECT_TRUE(panel.message().contains(panel.places().at(1).reason));
    panel.openRow(0);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened.at(0).at(0).toString(), kept);

    auto* list = panel.findChild<QListWidget*>();
    ASSERT_TRUE(list->model()->moveRow({}, 1, {}, 0));
    EXPECT_EQ(store.channels().at(0).name, QStringLiteral("gone"));
}

TEST(FolderCardList, ShowsEachChildWithItsCountAndAFavouriteAsCoverAndOpensWithEnter)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("a/1.jpg"), {80, 60}, Qt::red);
    const QString favourite = folder.writePicture(QStringLiteral("a/2.jpg"), {80, 60}, Qt::blue);
    folder.makeFolder(QStringLiteral("b"));
    platform::MemorySettingsStore settings;
    library::FavourManager favourites(settings);
    ASSERT_TRUE(favourites.open(folder.filePath(QStringLiteral("fav.db"))));
    ASSERT_TRUE(favourites.setFavour(favourite, true));
    app::FolderCardList cards(&favourites);
    cards.resize(600, 400);
    cards.show();
    QSignalSpy opened(&cards, &app::FolderCardList::openRequested);
    cards.showFolder(folder.path());
    const QString a = folder.filePath(QStringLiteral("a"));
    ASSERT_TRUE(
        waitUntil([&] { return cards.hasCover(a) && cards.card(folder.filePath(QStringLiteral("b"))); }));
    EXPECT_EQ(cards.card(a)->pictureCount, 2);
    EXPECT_TRUE(cards.item(0)->text().contains(QStringLiteral("2 张")));
    const QImage cover = cards.item(0)->icon().pixmap(128, 96).toImage();
    EXPECT_GT(qBlue(cover.pixel(64, 48)), 200); // the favourite, not the first picture

    cards.setFocus();
    cards.setCurrentRow(0);
    QTest::keyClick(&cards, Qt::Key_Return);
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened.at(0).at(0).toString(), a);
}

TEST(FolderMapView, ShowsTheTreeWithCountsMarksTheFolderAndJumpsAlongTheDeepWalk)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("day1/1.jpg"));
    folder.writePicture(QStringLiteral("day1/am/1.jpg"));
    folder.writePicture(QStringLiteral("day1/am/2.jpg"));
    folder.makeFolder(QStringLiteral("day2"));
    browse::LMRModeState state(nullptr);
    app::FolderMapView map(state);
    map.show();
    const QString root = folder.path();
    state.setFolderPath(root, root, root);
    ASSERT_TRUE(waitUntil([&] { return map.folders().size() == 4; }));
    EXPECT_EQ(map.markedFolder(), root);
    EXPECT_EQ(map.topLevelItem(0)->child(0)->child(0)->text(1), QStringLiteral("2"));

    QSignalSpy opened(&map, &app::FolderMapView::openRequested);
    const QString am = folder.filePath(QStringLiteral("day1/am"));
    map.openItem(map.topLevelItem(0)->child(0)->child(0));
    ASSERT_EQ(opened.size(), 1);
    EXPECT_EQ(opened.at(0).at(0).toString(), am);
    state.setFolderPath(am, am, am); // opened inside the tree: the map stays on its root
    EXPECT_EQ(map.root(), root);
    EXPECT_EQ(map.markedFolder(), am);

    QSignalSpy moved(&map, &app::FolderMapView::moveRequested);
    state.setDeepMode(true);
    state.updateNavigationState(am, root, {}, map.folders());
    state.setCurrentDeepIndex(2);
    map.openItem(map.topLevelItem(0)->child(1)); // day2, the walk's fourth folder
    ASSERT_EQ(moved.size(), 1);
    EXPECT_EQ(moved.at(0).at(0).toInt(), 1);
}

TEST(FavouritesPanel, ShowsFavouritesAsAWaterfallAndADoubleClickOpensThePictureInItsFolder)
{
    TempFolder folder;
    const QString photo = folder.writePicture(QStringLiteral("shoot/IMG_1.jpg"), {300, 200});
    platform::MemorySettingsStore settings;
    library::FavourManager favourites(settings);
    ASSERT_TRUE(favourites.open(folder.filePath(QStringLiteral("fav.db"))));
    ASSERT_TRUE(favourites.setType(photo, library::FavourType::sss));
    Host host;
    app::FavouritesPanel panel(host, favourites);
    panel.resize(500, 500);
    panel.show();
    app::FavouriteMasonryView& view = panel.findChild<app::PictureListWaterfall*>()->view();
    ASSERT_TRUE(waitUntil([&] { return !view.tileImage(0).isNull(); }));
    EXPECT_EQ(view.favourites().mark(photo).type, library::FavourType::sss);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, view.viewportRect(0).center());
    EXPECT_EQ(host.opened, QStringList{photo});
}

// A script marks a picture while the window is open: the window's own list of marks does not know, but the
// panel reads the store when it opens, and the buttons of what it lists show the marks it read.
TEST(FavouritesPanel, ButtonsShowTheMarksOfAPictureMarkedElsewhere)
{
    TempFolder folder;
    const QString photo = folder.writePicture(QStringLiteral("shoot/IMG_1.jpg"), {300, 200});
    const QString database = folder.filePath(QStringLiteral("fav.db"));
    platform::MemorySettingsStore settings;
    library::FavourManager window(settings);
    ASSERT_TRUE(window.open(database));
    library::FavourManager script(settings);
    ASSERT_TRUE(script.open(database));
    ASSERT_TRUE(script.setType(photo, library::FavourType::heart));
    ASSERT_TRUE(window.records().isEmpty());

    Host host;
    app::FavouritesPanel panel(host, window);
    EXPECT_EQ(panel.shownPaths(), QStringList{photo});
    const app::FavouriteToggle::Mark shown =
        panel.findChild<app::PictureListWaterfall*>()->view().favourites().mark(photo);
    EXPECT_TRUE(shown.isFavour);
    EXPECT_EQ(shown.type, library::FavourType::heart);
}

// A shoot of one picture, selected in the window, with the bundle and favourite databases beside it.
class RepertoirePanelTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        folder.writePicture(QStringLiteral("shoot/IMG_1.jpg"));
        host.state.setFolderPath(shoot, shoot, shoot);
        host.state.setImageFiles({QStringLiteral("IMG_1.jpg")});
        host.state.select(0);
        ASSERT_TRUE(store.open(folder.filePath(QStringLiteral("repertoire.db"))));
        ASSERT_TRUE(favourites.open(folder.filePath(QStringLiteral("fav.db"))));
    }

    TempFolder folder;
    const QString shoot = folder.makeFolder(QStringLiteral("shoot"));
    Host host;
    library::RepertoireStore store;
    platform::MemorySettingsStore settings;
    library::FavourManager favourites{settings};
};

TEST_F(RepertoirePanelTest, AddsTheSelectedPictureToABundleAndExportsIt)
{
    app::RepertoirePanel panel(host, store, favourites);

    panel.addSelection();
    panel.addSelection();
    EXPECT_EQ(panel.currentBundle(), QStringLiteral("Repertoire"));
    EXPECT_EQ(panel.pictures().paths(), QStringList{shoot + QStringLiteral("/IMG_1.jpg")});

    const QString out = folder.makeFolder(QStringLiteral("out"));
    folder.write(QStringLiteral("out/IMG_1.jpg"), "theirs");
    QSignalSpy exported(&panel, &app::RepertoirePanel::exported);
    panel.exportTo(out, false);
    ASSERT_TRUE(waitUntil([&] { return exported.size() == 1; }));
    EXPECT_EQ(folder.read(QStringLiteral("out/IMG_1.jpg")), QByteArrayLiteral("theirs"));
    EXPECT_TRUE(folder.exists(QStringLiteral("out/IMG_1_1.jpg")));
}

TEST_F(RepertoirePanelTest, RenamesAndDeletesABundleButNeverItsPictures)
{
    app::RepertoirePanel panel(host, store, favourites);
    ASSERT_EQ(panel.createBundle(QStringLiteral("婚礼")), std::nullopt);
    ASSERT_EQ(panel.createBundle(QStringLiteral("客户")), std::nullopt);
    panel.setCurrentBundle(QStringLiteral("婚礼"));
    panel.addSelection();

    EXPECT_NE(panel.renameBundle(QStringLiteral("客户")), std::nullopt) << "a taken name";
    EXPECT_EQ(panel.currentBundle(), QStringLiteral("婚礼"));
    ASSERT_EQ(panel.renameBundle(QStringLiteral(" 婚礼 精选 ")), std::nullopt);
    EXPECT_EQ(panel.currentBundle(), QStringLiteral("婚礼 精选"));
    EXPECT_EQ(panel.pictures().paths(), QStringList{shoot + QStringLiteral("/IMG_1.jpg")});
    // A panel opened later comes back to the bundle under its new name.
    app::RepertoirePanel later(host, store, favourites);
    EXPECT_EQ(later.currentBundle(), QStringLiteral("婚礼 精选"));

    ASSERT_EQ(panel.dropBundle(), std::nullopt);
    EXPECT_FALSE(store.bundle(QStringLiteral("婚礼 精选")));
    EXPECT_EQ(panel.currentBundle(), QStringLiteral("客户"));
    EXPECT_TRUE(folder.exists(QStringLiteral("shoot/IMG_1.jpg")));
}
