// SPDX-License-Identifier: GPL-3.0-or-later
// The thumbnail scheduler: the current picture is served before queued prefetch, leaving a folder drops its
// queued work and its late results, a reload throws away a decode in flight, failures are not retried;
// reading the folder again retries them and reads again the files that changed since they were decoded.
#include "browse/thumbnails/ThumbnailLoader.h"

#include "browse/thumbnails/ThumbnailCache.h"
#include "tests/browse/thumbnails/ScriptedDecodes.h"
#include "tests/support/TempFolder.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace lumaro::browse {
namespace {

using testing::waitUntil;

struct ScriptedDecoder : ScriptedDecodes
{
    ThumbnailLoader::DecodeFunction function()
    {
        return [this](const QString& path, int, bool thumbnail, int) {
            return decode(path, (thumbnail ? QStringLiteral("T:") : QStringLiteral("P:")) + path);
        };
    }
};

ThumbnailLoader::Options oneThread()
{
    ThumbnailLoader::Options options;
    options.threads = 1;
    options.listenForReloads = false;
    return options;
}

bool idle(const ThumbnailLoader& loader)
{
    return loader.queuedCount() == 0 && loader.runningCount() == 0;
}

TEST(ThumbnailLoaderTest, CurrentPictureIsServedBeforeQueuedPrefetch)
{
    ThumbnailCache cache;
    ScriptedDecoder decoder;
    decoder.heldPath = QStringLiteral("/f/a.jpg");
    ThumbnailLoader loader(cache, decoder.function(), oneThread());
    loader.setFolder(QStringLiteral("/f"));
    loader.requestThumbnails(
        {}, {QStringLiteral("/f/a.jpg"), QStringLiteral("/f/b.jpg"), QStringLiteral("/f/c.jpg")});
    ASSERT_TRUE(waitUntil([&] { return decoder.started.available() > 0; }));

    loader.requestPreview(QStringLiteral("/f/x.jpg"));
    loader.requestThumbnails({QStringLiteral("/f/v.jpg")},
                             {QStringLiteral("/f/b.jpg"), QStringLiteral("/f/c.jpg")});
    decoder.release.release();
    ASSERT_TRUE(waitUntil([&] { return idle(loader) && decoder.decoded().size() == 5; }));

    EXPECT_EQ(decoder.decoded(), (QStringList{QStringLiteral("T:/f/a.jpg"), QStringLiteral("P:/f/x.jpg"),
                                              QStringLiteral("T:/f/v.jpg"), QStringLiteral("T:/f/b.jpg"),
                                              QStringLiteral("T:/f/c.jpg")}));
    EXPECT_TRUE(loader.preview(QStringLiteral("/f/x.jpg")).has_value());
    EXPECT_TRUE(cache.image(QStringLiteral("/f/c.jpg")).has_value());
}

TEST(ThumbnailLoaderTest, LeavingAFolderDropsItsQueuedWorkAndLateResults)
{
    ThumbnailCache cache;
    ScriptedDecoder decoder;
    decoder.heldPath = QStringLiteral("/old/a.jpg");
    ThumbnailLoader loader(cache, decoder.function(), oneThread());
    QSignalSpy ready(&loader, &ThumbnailLoader::thumbnailReady);
    loader.setFolder(QStringLiteral("/old"));
    loader.requestThumbnails(
        {QStringLiteral("/old/a.jpg"), QStringLiteral("/old/b.jpg"), QStringLiteral("/old/c.jpg")});
    ASSERT_TRUE(waitUntil([&] { return decoder.started.available() > 0; }));

    loader.setFolder(QStringLiteral("/new"));
    loader.requestThumbnails({QStringLiteral("/new/n.jpg")});
    decoder.release.release();
    ASSERT_TRUE(
        waitUntil([&] { return idle(loader) && cache.image(QStringLiteral("/new/n.jpg")).has_value(); }));

    EXPECT_EQ(decoder.decoded(),
              (QStringList{QStringLiteral("T:/old/a.jpg"), QStringLiteral("T:/new/n.jpg")}));
    EXPECT_FALSE(cache.image(QStringLiteral("/old/a.jpg")).has_value()); // the late result was thrown away
    ASSERT_EQ(ready.size(), 1);
    EXPECT_EQ(ready.at(0).at(0).toString(), QStringLiteral("/new/n.jpg"));
}

TEST(ThumbnailLoaderTest, NewSelectionReplacesQueuedPreviews)
{
    ThumbnailCache cache;
    ScriptedDecoder decoder;
    decoder.heldPath = QStringLiteral("/f/1.jpg");
    ThumbnailLoader loader(cache, decoder.function(), oneThread());
    loader.setFolder(QStringLiteral("/f"));
    loader.requestPreview(QStringLiteral("/f/1.jpg"), {QStringLiteral("/f/2.jpg")});
    ASSERT_TRUE(waitUntil([&] { return decoder.started.available() > 0; }));
    // The key is held: the selection runs on while 1 decodes.
    for (int i = 2; i <= 9; ++i)
        loader.requestPreview(QStringLiteral("/f/%1.jpg").arg(i), {QStringLiteral("/f/%1.jpg").arg(i + 1)});
    decoder.release.release();
    ASSERT_TRUE(waitUntil([&] { return idle(loader); }));
    EXPECT_EQ(decoder.decoded(), (QStringList{QStringLiteral("P:/f/1.jpg"), QStringLiteral("P:/f/9.jpg"),
                                              QStringLiteral("P:/f/10.jpg")}));
}

TEST(ThumbnailLoaderTest, ReloadThrowsAwayADecodeInFlightAndDecodesAgain)
{
    ThumbnailCache cache;
    ScriptedDecoder decoder;
    decoder.heldPath = QStringLiteral("/f/r.jpg");
    ThumbnailLoader loader(cache, decoder.function(), oneThread());
    QSignalSpy invalidated(&loader, &ThumbnailLoader::invalidated);
    loader.setFolder(QStringLiteral("/f"));
    loader.requestThumbnails({QStringLiteral("/f/r.jpg")});
    ASSERT_TRUE(waitUntil([&] { return decoder.started.available() > 0; }));
    decoder.started.acquire();

    loader.invalidate(QStringLiteral("/f/r.jpg")); // the file was turned on disk meanwhile
    EXPECT_EQ(invalidated.size(), 1);
    decoder.heldPath.clear();
    loader.requestThumbnails({QStringLiteral("/f/r.jpg")});
    decoder.release.release();
    ASSERT_TRUE(waitUntil([&] { return idle(loader) && decoder.decoded().size() == 2; }));
    EXPECT_TRUE(cache.image(QStringLiteral("/f/r.jpg")).has_value());
}

TEST(ThumbnailLoaderTest, AFileThatCannotBeDecodedIsMarkedAndNotRetried)
{
    ThumbnailCache cache;
    ScriptedDecoder decoder;
    decoder.setFailing({QStringLiteral("/f/bad.jpg")});
    ThumbnailLoader loader(cache, decoder.function(), oneThread());
    loader.setFolder(QStringLiteral("/f"));
    loader.requestThumbnails({QStringLiteral("/f/bad.jpg")});
    ASSERT_TRUE(
        waitUntil([&] { return loader.hasFailed(QStringLiteral("/f/bad.jpg"), PictureKind::thumbnail); }));
    loader.requestThumbnails({QStringLiteral("/f/bad.jpg")});
    ASSERT_TRUE(waitUntil([&] { return idle(loader); }));
    EXPECT_EQ(decoder.decoded().size(), 1);
    EXPECT_FALSE(cache.image(QStringLiteral("/f/bad.jpg")).has_value());
}

// A red picture with grain, so that its scan is long enough to be cut in the middle.
QByteArray redJpeg()
{
    QImage image(320, 240, QImage::Format_RGB32);
    QRandomGenerator grain(7);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(215 + int(grain.bounded(40u)), int(grain.bounded(40u)), 0));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 95);
    return bytes;
}

struct RefreshCase
{
    const char* name;
    double writtenBeforeFirstLook; // the share of the file on disk when its thumbnail was first read
    bool readAgain;
};

void PrintTo(const RefreshCase& c, std::ostream* out)
{
    *out << c.name;
}

class ThumbnailRefreshTest : public ::testing::TestWithParam<RefreshCase>
{
};

// A picture copied in while the folder is on screen: what was read of it mid-copy must not stay after a
// refresh.
TEST_P(ThumbnailRefreshTest, ARefreshReadsAgainWhatFailedOrChanged)
{
    const RefreshCase& c = GetParam();
    testing::TempFolder folder;
    const QByteArray whole = redJpeg();
    const QString path = folder.write(QStringLiteral("IMG_0001.JPG"),
                                      whole.left(qsizetype(whole.size() * c.writtenBeforeFirstLook)));
    ThumbnailCache cache;
    ThumbnailLoader loader(cache, {}, oneThread());
    loader.setFolder(folder.path());
    loader.requestThumbnails({path});
    ASSERT_TRUE(waitUntil([&] {
        return idle(loader) && (cache.contains(path) || loader.hasFailed(path, PictureKind::thumbnail));
    }));
    if (c.writtenBeforeFirstLook < 1)
        folder.write(QStringLiteral("IMG_0001.JPG"), whole); // the copy ends

    QSignalSpy invalidated(&loader, &ThumbnailLoader::invalidated);
    loader.refresh();
    EXPECT_EQ(invalidated.count(), c.readAgain ? 1 : 0);
    loader.requestThumbnails({path});
    ASSERT_TRUE(waitUntil([&] { return idle(loader) && cache.contains(path); }));
    EXPECT_FALSE(loader.hasFailed(path, PictureKind::thumbnail));
    const QImage thumbnail = *cache.image(path);
    const QRgb corner = thumbnail.pixel(thumbnail.width() - 1, thumbnail.height() - 1);
    EXPECT_GT(qRed(corner), 180) << "the bottom of the picture is still the grey of a cut-short read";
    EXPECT_LT(qGreen(corner), 90);
}

INSTANTIATE_TEST_SUITE_P(MidCopy, ThumbnailRefreshTest,
                         ::testing::Values(RefreshCase{"nothing_but_the_first_bytes_failed", 0.01, true},
                                           RefreshCase{"half_the_file_decoded_half_grey", 0.5, true},
                                           RefreshCase{"the_whole_file_is_not_read_twice", 1.0, false}),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace lumaro::browse
