// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/LMRModeState.h"

#include "browse/thumbnails/ThumbnailCache.h"
#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

using namespace lumaro::browse;

namespace {

QStringList names(int count)
{
    QStringList list;
    for (int i = 0; i < count; ++i)
        list << QStringLiteral("IMG_%1.jpg").arg(i);
    return list;
}

struct Fixture
{
    ThumbnailCache cache;
    LMRModeState state{&cache};

    void setUp(int count, std::optional<int> selection)
    {
        state.setImageFiles(names(count));
        if (selection)
            state.select(*selection);
        else
            state.clearSelection();
    }
};

} // namespace

struct SetImageFilesCase
{
    int before;
    std::optional<int> selection;
    int after;
    std::optional<int> expected;
};

class SetImageFilesSelection : public ::testing::TestWithParam<SetImageFilesCase>
{
};

TEST_P(SetImageFilesSelection, KeepsAnInRangeSelectionAndResetsTheRest)
{
    const auto& c = GetParam();
    Fixture f;
    f.setUp(c.before, c.selection);
    f.state.setImageFiles(names(c.after));
    EXPECT_EQ(f.state.selectedImageIndex(), c.expected);
}

INSTANTIATE_TEST_SUITE_P(Rules, SetImageFilesSelection,
                         ::testing::Values(SetImageFilesCase{10, 3, 10, 3}, // reload keeps the place
                                           SetImageFilesCase{10, 5, 3, 0},  // out of range: first
                                           SetImageFilesCase{10, 3, 3, 0},  // exactly count: first
                                           SetImageFilesCase{10, 2, 3, 2},  // last still valid
                                           SetImageFilesCase{10, 5, 0, std::nullopt},
                                           SetImageFilesCase{10, std::nullopt, 5, std::nullopt}));

struct RemoveCase
{
    int count;
    std::optional<int> selection;
    int removed;
    std::optional<int> expected;
    int remaining;
};

class RemoveFileSelection : public ::testing::TestWithParam<RemoveCase>
{
};

TEST_P(RemoveFileSelection, MovesTheSelectionByTheDeleteRule)
{
    const auto& c = GetParam();
    Fixture f;
    f.setUp(c.count, c.selection);
    f.state.removeFile(c.removed);
    EXPECT_EQ(f.state.selectedImageIndex(), c.expected);
    EXPECT_EQ(f.state.imageFiles().size(), c.remaining);
}

INSTANTIATE_TEST_SUITE_P(Rules, RemoveFileSelection,
                         ::testing::Values(RemoveCase{5, 4, 4, 3, 4},            // last removed: the new last
                                           RemoveCase{5, 2, 2, 2, 4},            // the next file slides in
                                           RemoveCase{1, 0, 0, std::nullopt, 0}, // the only file
                                           RemoveCase{5, 3, 1, 3, 4}, // after the removed one: number kept
                                           RemoveCase{5, 1, 3, 1, 4}, // before the removed one: unchanged
                                           RemoveCase{5, std::nullopt, 2, std::nullopt, 4},
                                           RemoveCase{5, 2, 5, 2,
                                                      5}, // out of range: nothing changes (logged)
                                           RemoveCase{5, 2, -1, 2, 5}));

TEST(LMRModeState, RemoveFileDropsPerFileDataAndTheCachedThumbnail)
{
    Fixture f;
    f.state.setFolderPath(QStringLiteral("/shoot"), QStringLiteral("/shoot"), QStringLiteral("/shoot"));
    f.setUp(3, 1);
    const QString name = f.state.imageFiles().at(1);
    f.state.setFileTags(name, {QStringLiteral("red")});
    f.state.setAnnotation(name, ImageAnnotation{{QStringLiteral("red")}});
    f.state.setRotationOverride(name, 270);
    f.cache.setImage(QImage(4, 4, QImage::Format_RGB32), QStringLiteral("/shoot/") + name);
    f.cache.setImage(QImage(4, 4, QImage::Format_RGB32), QStringLiteral("/shoot/other.jpg"));

    lumaro::testing::LogCapture log;
    f.state.removeFile(1);
    EXPECT_FALSE(f.state.fileTags().contains(name));
    EXPECT_FALSE(f.state.imageAnnotations().contains(name));
    EXPECT_FALSE(f.state.rotationOverrides().contains(name));
    EXPECT_FALSE(f.cache.image(QStringLiteral("/shoot/") + name));
    EXPECT_TRUE(f.cache.image(QStringLiteral("/shoot/other.jpg")));
    EXPECT_TRUE(log.contains(QStringLiteral("LMRModeState - 从列表中移除文件: IMG_1.jpg")));
    EXPECT_TRUE(log.contains(QStringLiteral("LMRModeState - 文件删除完成，剩余文件数: 2, 当前选中索引: 1")));
}

TEST(LMRModeState, HistoryKeepsTheSixNewestRecords)
{
    Fixture f;
    lumaro::testing::LogCapture log;
    for (int i = 0; i < 7; ++i)
        f.state.addDeletedFile({QStringLiteral("f%1.jpg").arg(i), i, QStringLiteral("/p")});
    ASSERT_EQ(f.state.deletedFilesHistory().size(), 6);
    EXPECT_EQ(f.state.deletedFilesHistory().front().fileName, QStringLiteral("f6.jpg"));
    EXPECT_EQ(f.state.deletedFilesHistory().back().fileName, QStringLiteral("f1.jpg"));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("LMRModeState - 删除历史已满，移除最旧的记录")), 1);
    EXPECT_TRUE(log.contains(QStringLiteral("LMRModeState - 添加删除文件到历史: f6.jpg [6]")));
}

struct RestoreCase
{
    int count;
    int originalIndex;
    int expectedPosition;
};

class RestoreFilePosition : public ::testing::TestWithParam<RestoreCase>
{
};

TEST_P(RestoreFilePosition, ReinsertsAtTheOldIndexOrTheEndAndSelectsIt)
{
    const auto& c = GetParam();
    Fixture f;
    f.setUp(c.count, std::nullopt);
    const DeletedFileInfo info{QStringLiteral("back.jpg"), c.originalIndex, QStringLiteral("/p")};
    f.state.addDeletedFile(info);
    f.state.restoreFile(info);
    EXPECT_EQ(f.state.imageFiles().indexOf(QStringLiteral("back.jpg")), c.expectedPosition);
    EXPECT_EQ(f.state.selectedImageIndex(), c.expectedPosition);
    EXPECT_TRUE(f.state.deletedFilesHistory().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rules, RestoreFilePosition,
                         ::testing::Values(RestoreCase{5, 2, 2}, RestoreCase{5, 5, 5},
                                           RestoreCase{2, 9, 2}, // the list got shorter: appended
                                           RestoreCase{0, 3, 0}));

TEST(LMRModeState, RestoreRemovesOnlyTheMatchingRecord)
{
    Fixture f;
    f.setUp(3, 0);
    const DeletedFileInfo older{QStringLiteral("a.jpg"), 1, QStringLiteral("/p")};
    const DeletedFileInfo newer{QStringLiteral("a.jpg"), 2, QStringLiteral("/p")};
    f.state.addDeletedFile(older);
    f.state.addDeletedFile(newer);
    lumaro::testing::LogCapture log;
    f.state.restoreFile(older);
    ASSERT_EQ(f.state.deletedFilesHistory().size(), 1);
    EXPECT_EQ(f.state.deletedFilesHistory().front().originalIndex, 2);
    EXPECT_TRUE(log.contains(QStringLiteral("LMRModeState - 文件恢复完成，当前文件数: 4, 选中索引: 1")));
}

TEST(LMRModeState, AChangedAuthorisedFolderResetsNavigationOutsideDeepMode)
{
    Fixture f;
    f.state.setFolderPath(QStringLiteral("/a"), QStringLiteral("/a"), QStringLiteral("/a"));
    f.state.updateNavigationState(QStringLiteral("/a/x"), QStringLiteral("/a"), {QStringLiteral("/a")},
                                  {QStringLiteral("/a/x")});
    f.state.setFolderPath(QStringLiteral("/a"), QStringLiteral("/a/x"), QStringLiteral("/a"));
    EXPECT_EQ(f.state.currentDirectory(), QStringLiteral("/a/x")); // same authorised folder: kept

    f.state.setDeepMode(true);
    f.state.setFolderPath(QStringLiteral("/b"), QStringLiteral("/b"), QStringLiteral("/b"));
    EXPECT_EQ(f.state.baseDirectory(), QStringLiteral("/a")); // deep mode keeps its walk

    f.state.setDeepMode(false);
    lumaro::testing::LogCapture log;
    f.state.setFolderPath(QStringLiteral("/c"), QStringLiteral("/c"), QStringLiteral("/c"));
    EXPECT_FALSE(f.state.baseDirectory());
    EXPECT_TRUE(f.state.recursiveDirectoryList().isEmpty());
    EXPECT_TRUE(log.contains(QStringLiteral("LMRModeState - 检测到授权目录变化，重置导航状态")));
}

TEST(LMRModeState, ShowingAnotherFolderDropsTheListAndEveryPerFileMap)
{
    // Per-file data is keyed by name and every card reuses IMG_0001.JPG: none of it may follow the user into
    // another folder. A reload of the same folder keeps it.
    Fixture f;
    f.state.setFolderPath(QStringLiteral("/cards/A"), QStringLiteral("/cards/A"), QStringLiteral("/cards/A"));
    const auto fill = [&] {
        f.setUp(3, 1);
        f.state.setAnnotation(QStringLiteral("IMG_1.jpg"), ImageAnnotation{{QStringLiteral("red")}});
        f.state.setFileTags(QStringLiteral("IMG_1.jpg"), {QStringLiteral("red")});
        f.state.setRotationOverride(QStringLiteral("IMG_1.jpg"), 90);
    };
    fill();
    f.state.setFolderPath(QStringLiteral("/cards/A/"), QStringLiteral("/cards/A/"),
                          QStringLiteral("/cards/A"));
    EXPECT_EQ(f.state.imageFiles().size(), 3);
    EXPECT_EQ(f.state.rotationOverrides().size(), 1);
    EXPECT_EQ(f.state.rotationOverrideForPath(QStringLiteral("/cards/A/IMG_1.jpg")), 90);
    EXPECT_EQ(f.state.rotationOverrideForPath(QStringLiteral("/cards/B/IMG_1.jpg")),
              0); // a namesake elsewhere

    struct Move
    {
        const char* what;
        QString authorized;
        QString listed;
    };
    for (const Move& move : {Move{"another card", "/cards/B", "/cards/B"},
                             Move{"deep mode: a sub-folder", "/cards/A", "/cards/A/100CANON"}}) {
        f.state.setFolderPath(QStringLiteral("/cards/A"), QStringLiteral("/cards/A"),
                              QStringLiteral("/cards/A"));
        fill();
        f.state.setFolderPath(move.authorized, move.listed, move.authorized);
        EXPECT_TRUE(f.state.imageFiles().isEmpty()) << move.what;
        EXPECT_FALSE(f.state.selectedImageIndex().has_value()) << move.what;
        EXPECT_TRUE(f.state.imageAnnotations().isEmpty()) << move.what;
        EXPECT_TRUE(f.state.fileTags().isEmpty()) << move.what;
        EXPECT_TRUE(f.state.rotationOverrides().isEmpty()) << move.what;
    }
}

TEST(LMRModeState, TagsReadFromDiskReplaceTheFoldersTagsAndAnnotations)
{
    Fixture f;
    f.setUp(3, 0);
    f.state.setAnnotation(QStringLiteral("IMG_0.jpg"), ImageAnnotation{{QStringLiteral("red")}});
    f.state.setFolderTags({{QStringLiteral("IMG_1.jpg"),
                            {QStringLiteral("Urlaub"), QStringLiteral("green"), QStringLiteral("red")}},
                           {QStringLiteral("IMG_2.jpg"), {QStringLiteral("Urlaub")}}});
    EXPECT_FALSE(f.state.imageAnnotations().contains(QStringLiteral("IMG_0.jpg")));
    EXPECT_EQ(f.state.imageAnnotations().value(QStringLiteral("IMG_1.jpg")).colors,
              (QStringList{QStringLiteral("green"), QStringLiteral("red")}));
    EXPECT_FALSE(f.state.imageAnnotations().contains(QStringLiteral("IMG_2.jpg")));
    EXPECT_EQ(f.state.fileTags().value(QStringLiteral("IMG_2.jpg")), QStringList{QStringLiteral("Urlaub")});
}

namespace {

using lumaro::platform::PickFlag;
using lumaro::platform::PictureMarks;

// IMG_0 … IMG_5: 0 picked, 1 ★3, 2 rejected, 3 red, 4 picked ★5, 5 nothing.
void markSix(Fixture& f)
{
    f.setUp(6, std::nullopt);
    f.state.setRating(QStringLiteral("IMG_0.jpg"), PictureMarks{0, PickFlag::picked});
    f.state.setRating(QStringLiteral("IMG_1.jpg"), PictureMarks{3});
    f.state.setRating(QStringLiteral("IMG_2.jpg"), PictureMarks{0, PickFlag::rejected});
    f.state.setAnnotation(QStringLiteral("IMG_3.jpg"), ImageAnnotation{{QStringLiteral("red")}});
    f.state.setRating(QStringLiteral("IMG_4.jpg"), PictureMarks{5, PickFlag::picked});
}

QStringList shownNumbers(const LMRModeState& state)
{
    QStringList numbers;
    for (const QString& name : state.imageFiles())
        numbers << name.mid(4, 1);
    return numbers;
}

} // namespace

struct FilterCase
{
    const char* what;
    PictureFilter filter;
    int selected;
    QStringList shown;     // by number
    QString selectedAfter; // by number; "" for none
};

class FilterSelection : public ::testing::TestWithParam<FilterCase>
{
};

TEST_P(FilterSelection, ShowsWhatPassesStaysOnThePictureAndClearingKeepsIt)
{
    const FilterCase& c = GetParam();
    Fixture f;
    markSix(f);
    f.state.select(c.selected);
    QList<bool> bulk;
    QObject::connect(&f.state, &LMRModeState::imageFilesChanged, [&] { bulk << f.state.isBulkListUpdate; });
    f.state.setPictureFilter(c.filter);
    EXPECT_EQ(shownNumbers(f.state), c.shown) << c.what;
    EXPECT_EQ(f.state.selectedImageFileName().value_or(QString()).mid(4, 1), c.selectedAfter) << c.what;
    EXPECT_EQ(bulk, QList<bool>{true}) << c.what;
    const auto onScreen = f.state.selectedImageFileName();
    f.state.setPictureFilter({});
    EXPECT_EQ(f.state.imageFiles().size(), 6) << c.what;
    // Back on the picture shown under the filter; when it showed none, on the one selected before it.
    EXPECT_EQ(f.state.selectedImageFileName(), onScreen ? onScreen : names(6).at(c.selected)) << c.what;
}

INSTANTIATE_TEST_SUITE_P(
    Rules, FilterSelection,
    ::testing::Values(FilterCase{"picks, on a pick", {true}, 4, {"0", "4"}, "4"},
                      FilterCase{"picks, from a non-pick: the next pick", {true}, 1, {"0", "4"}, "4"},
                      FilterCase{"picks, after the last pick: the one before", {true}, 5, {"0", "4"}, "4"},
                      FilterCase{"three stars or more", {false, 3}, 0, {"1", "4"}, "1"},
                      FilterCase{"red", {false, 0, QStringLiteral("red")}, 3, {"3"}, "3"},
                      FilterCase{"rejects hidden", {false, 0, {}, true}, 2, {"0", "1", "3", "4", "5"}, "3"},
                      FilterCase{"nothing passes", {true, 4, QStringLiteral("red")}, 3, {}, ""}));

TEST(LMRModeStateFilter, APictureThatStopsPassingLeavesTheListAndANewFolderStartsUnfiltered)
{
    Fixture f;
    markSix(f);
    f.state.select(0);
    f.state.setPictureFilter(PictureFilter{true});
    f.state.setRating(QStringLiteral("IMG_0.jpg"), PictureMarks{2}); // the pick taken back
    EXPECT_EQ(shownNumbers(f.state), QStringList{"4"});
    EXPECT_EQ(f.state.selectedImageFileName(), QStringLiteral("IMG_4.jpg"));

    f.state.setFolderPath(QStringLiteral("/other"), QStringLiteral("/other"), QStringLiteral("/other"));
    EXPECT_FALSE(f.state.pictureFilter().isActive());
    f.state.setImageFiles(names(3));
    EXPECT_EQ(f.state.imageFiles().size(), 3);
}

TEST(LMRModeStateFilter, ARestoreGoesBackIntoTheWholeListAtItsPlace)
{
    Fixture f;
    markSix(f);
    f.state.setPictureFilter(PictureFilter{false, 0, {}, true}); // 0 1 3 4 5
    f.state.select(2);                                           // IMG_3
    DeletedFileInfo info{QStringLiteral("IMG_3.jpg"), 2};
    info.folderIndex = 3;
    f.state.addDeletedFile(info);
    f.state.removeFile(2);
    EXPECT_EQ(f.state.folderFiles().size(), 5);
    f.state.setPictureFilter(PictureFilter{true}); // 0 4: the restored one will not pass
    f.state.select(1);
    f.state.restoreFile(info);
    EXPECT_EQ(shownNumbers(f.state), (QStringList{"0", "4"}));
    EXPECT_EQ(f.state.selectedImageFileName(), QStringLiteral("IMG_4.jpg"));
    EXPECT_TRUE(f.state.deletedFilesHistory().isEmpty());
    f.state.setPictureFilter({});
    EXPECT_EQ(f.state.imageFiles(), names(6));
}
