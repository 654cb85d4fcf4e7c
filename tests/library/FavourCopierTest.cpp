// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourCopier.h"

#include "library/FavourManager.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <gtest/gtest.h>

using namespace lumaro::library;
using lumaro::platform::MemorySettingsStore;
using lumaro::testing::LogCapture;
using lumaro::testing::TempFolder;

namespace {

class FavourCopierTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(manager.open(folder.filePath(QStringLiteral("fav.db"))));
        photo = folder.writePicture(QStringLiteral("shoot/IMG_0001.jpg"));
        target = folder.filePath(QStringLiteral("chosen/Favourites"));
        settings.setBoolean(FavourCopier::enabledKey, true);
        settings.setString(FavourCopier::targetPositionKey, target);
    }

    TempFolder folder;
    MemorySettingsStore settings;
    FavourManager manager{settings};
    QString photo;
    QString target;
};

} // namespace

TEST_F(FavourCopierTest, MarkingAFavouriteCopiesThePictureWholeWithItsTime)
{
    ASSERT_TRUE(manager.setFavour(photo, true));
    const QString copy = target + QStringLiteral("/IMG_0001.jpg");
    ASSERT_TRUE(QFileInfo::exists(copy));
    EXPECT_EQ(folder.read(QStringLiteral("chosen/Favourites/IMG_0001.jpg")), folder.read(QStringLiteral("shoot/IMG_0001.jpg")));
    EXPECT_EQ(QFileInfo(copy).lastModified(), QFileInfo(photo).lastModified());
}

TEST_F(FavourCopierTest, TheSidecarFollowsTheCopyEvenUnderAFreeName)
{
    folder.write(QStringLiteral("shoot/IMG_0001.jpg.xmp"), "stars");
    folder.write(QStringLiteral("chosen/Favourites/IMG_0001.jpg"), "another card's picture");
    ASSERT_TRUE(manager.setFavour(photo, true));
    EXPECT_EQ(folder.read(QStringLiteral("chosen/Favourites/IMG_0001_1.jpg.xmp")), QByteArray("stars"));
    EXPECT_FALSE(folder.exists(QStringLiteral("chosen/Favourites/IMG_0001.jpg.xmp")));
}

TEST_F(FavourCopierTest, NothingIsCopiedWhenTheOptionIsOff)
{
    settings.setBoolean(FavourCopier::enabledKey, false);
    ASSERT_TRUE(manager.setFavour(photo, true));
    EXPECT_FALSE(QFileInfo::exists(target));
}

TEST_F(FavourCopierTest, AnotherPictureOfTheSameNameIsNeverOverwritten)
{
    const QByteArray theirs("a different picture that happens to share the name");
    folder.write(QStringLiteral("chosen/Favourites/IMG_0001.jpg"), theirs);
    ASSERT_TRUE(manager.setFavour(photo, true));
    EXPECT_EQ(folder.read(QStringLiteral("chosen/Favourites/IMG_0001.jpg")), theirs);
    EXPECT_EQ(folder.read(QStringLiteral("chosen/Favourites/IMG_0001_1.jpg")), folder.read(QStringLiteral("shoot/IMG_0001.jpg")));
    // Marked again: its copy under the suffixed name is found, not made a second time.
    ASSERT_TRUE(manager.setFavour(photo, false));
    ASSERT_TRUE(manager.setFavour(photo, true));
    EXPECT_EQ(folder.entries(QStringLiteral("chosen/Favourites")),
              (QStringList{QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0001_1.jpg")}));
}

TEST_F(FavourCopierTest, TheCopyComesBeforeTheRowAndAMissingCopyIsMadeByTheNextMark)
{
    const QString other = folder.writePicture(QStringLiteral("shoot/IMG_0002.jpg"));
    std::optional<bool> rowAtCopy;
    manager.setCopyRunner([&](const std::function<void()>& copy) {
        rowAtCopy = manager.find(other).record.has_value();
        copy();
    });
    ASSERT_TRUE(manager.setFavour(other, true));
    EXPECT_EQ(rowAtCopy, std::optional<bool>(false)); // copied while the picture had no row yet

    // A favourite without its copy, as a mark stopped between the two used to leave it.
    settings.setBoolean(FavourCopier::enabledKey, false);
    ASSERT_TRUE(manager.setFavour(photo, true));
    settings.setBoolean(FavourCopier::enabledKey, true);
    ASSERT_TRUE(manager.setFavour(photo, true));
    EXPECT_EQ(folder.read(QStringLiteral("chosen/Favourites/IMG_0001.jpg")), folder.read(QStringLiteral("shoot/IMG_0001.jpg")));
}

TEST_F(FavourCopierTest, MarkingAgainOrSettingATypeDoesNotCopyTwice)
{
    ASSERT_TRUE(manager.setFavour(photo, true));
    ASSERT_TRUE(manager.setType(photo, FavourType::sss));
    ASSERT_TRUE(manager.setFavour(photo, false));
    ASSERT_TRUE(manager.setFavour(photo, true));
    EXPECT_EQ(folder.entries(QStringLiteral("chosen/Favourites")), QStringList{QStringLiteral("IMG_0001.jpg")});
}

TEST_F(FavourCopierTest, AFailedCopyIsReportedButTheFavouriteIsKept)
{
    folder.write(QStringLiteral("chosen/Favourites"), "a file where the folder should be");
    LogCapture log;
    const auto result = manager.setFavour(photo, true);
    ASSERT_TRUE(result && result.record);
    EXPECT_TRUE(result.record->isFavour);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("FavourCopier - ⚠️ favcp PNG 移动失败: ")), 1);
    EXPECT_EQ(folder.read(QStringLiteral("chosen/Favourites")), QByteArray("a file where the folder should be"));
}

TEST_F(FavourCopierTest, AMissingPictureIsReportedAsNotProduced)
{
    LogCapture log;
    const FavourCopier copier(settings);
    EXPECT_FALSE(copier.copy(folder.filePath(QStringLiteral("gone.jpg"))));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("FavourCopier - ⚠️ favcp PNG 生成失败: ")), 1);
}

TEST(FavourCopier, WithoutAChosenFolderCopiesGoUnderPictures)
{
    MemorySettingsStore settings;
    const FavourCopier copier(settings);
    EXPECT_FALSE(copier.isEnabled());
    EXPECT_EQ(copier.targetFolder(), QStandardPaths::writableLocation(QStandardPaths::PicturesLocation)
                                         + QStringLiteral("/Lumaro/Favourites"));
}

TEST(FavourCopier, WithoutAChosenFolderCopiesGoUnderTheImportLocation)
{
    MemorySettingsStore settings;
    settings.setString(QStringLiteral("CardImportService_ImportLocation"), QStringLiteral("/media/work"));
    EXPECT_EQ(FavourCopier(settings).targetFolder(), QStringLiteral("/media/work/Favourites"));
}
