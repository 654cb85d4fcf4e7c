// SPDX-License-Identifier: GPL-3.0-or-later
// The loupe opened without a point looks at the picture's face, once: the next picture keeps the place, and
// a point given wins.
#include "app/LoupeView.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/FaceCentreFinder.h"
#include "browse/thumbnails/FullPictureLoader.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailLoader.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using testing::waitUntil;

TEST(LoupeView, OpensOnTheFaceFoundOffTheMainThreadAndKeepsThePlaceForTheNextPicture)
{
    testing::TempFolder folder;
    folder.writePicture(QStringLiteral("a.jpg"), QSize(400, 300));
    folder.writePicture(QStringLiteral("b.jpg"), QSize(400, 300));
    browse::ThumbnailCache cache;
    browse::LMRModeState state(&cache);
    state.setFolderPath(folder.path(), folder.path(), folder.path());
    state.setImageFiles({QStringLiteral("a.jpg"), QStringLiteral("b.jpg")});
    state.select(0);
    browse::ThumbnailLoader previews(cache);
    browse::FullPictureLoader full;
    QStringList looked;
    browse::FaceCentreFinder faces([&looked](const QString& path, int) {
        looked << path; // on the finder's thread; read only after the answer came back
        return std::optional<QPointF>(QPointF(0.25, 0.3));
    });
    QWidget parent;
    parent.resize(300, 200);
    parent.show();
    LoupeView loupe(state, previews, full, &parent, &faces);

    loupe.open();
    EXPECT_EQ(loupe.centre(), QPointF(0.5, 0.5)); // the middle until the face is known
    ASSERT_TRUE(waitUntil([&] { return loupe.centre() == QPointF(0.25, 0.3); }));
    EXPECT_EQ(looked, QStringList{folder.filePath(QStringLiteral("a.jpg"))});
    state.select(1);
    EXPECT_EQ(loupe.centre(), QPointF(0.25, 0.3));

    loupe.open(QPointF(0.9, 0.9)); // a double-click's point
    faces.request(folder.filePath(QStringLiteral("b.jpg")));
    ASSERT_TRUE(
        waitUntil([&] { return faces.centre(folder.filePath(QStringLiteral("b.jpg"))).has_value(); }));
    EXPECT_EQ(loupe.centre(), QPointF(0.9, 0.9));
}

} // namespace
} // namespace lumaro::app

namespace lumaro::app {
namespace {

TEST(LoupeView, ARejectIsMarkedInItsCornerWithoutDarkeningThePictureBeingJudged)
{
    testing::TempFolder folder;
    folder.writePicture(QStringLiteral("a.jpg"), QSize(600, 400), Qt::white);
    browse::ThumbnailCache cache;
    browse::LMRModeState state(&cache);
    state.setFolderPath(folder.path(), folder.path(), folder.path());
    state.setImageFiles({QStringLiteral("a.jpg")});
    state.select(0);
    state.setRating(QStringLiteral("a.jpg"), platform::PictureMarks{0, platform::PickFlag::rejected});
    browse::ThumbnailLoader previews(cache);
    browse::FullPictureLoader full;
    QWidget parent;
    parent.resize(300, 200);
    parent.show();
    LoupeView loupe(state, previews, full, &parent);
    loupe.open();
    ASSERT_TRUE(waitUntil([&] { return loupe.isShowingFullSize(); }));
    EXPECT_GT(qGray(loupe.grab().toImage().pixel(150, 100)), 230);
}

} // namespace
} // namespace lumaro::app
