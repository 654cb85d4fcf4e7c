// SPDX-License-Identifier: GPL-3.0-or-later
// The thumbnail scheduler: the current picture is served before queued prefetch, leaving a folder drops its
// queued work and its late results, a reload throws away a decode in flight, failures are not retried.
#include "browse/thumbnails/ThumbnailLoader.h"

#include "browse/thumbnails/ThumbnailCache.h"
#include "tests/support/TempFolder.h"

#include <QSemaphore>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <mutex>

namespace lumaro::browse {
namespace {

using testing::waitUntil;

// A decode that records what it was asked for and can hold one path until the test lets it go.
struct ScriptedDecoder
{
    std::mutex mutex;
    QStringList order;
    QString heldPath;
    QSemaphore started;
    QSemaphore release;
    QStringList failing;

    ThumbnailLoader::DecodeFunction function()
    {
        return [this](const QString& path, int, bool thumbnail, int) {
            {
                std::lock_guard lock(mutex);
                order.append((thumbnail ? QStringLiteral("T:") : QStringLiteral("P:")) + path);
            }
            if (path == heldPath) {
                started.release();
                release.acquire();
            }
            if (failing.contains(path))
                return QImage();
            QImage image(8, 8, QImage::Format_RGB32);
            image.fill(Qt::green);
            return image;
        };
    }
    QStringList decoded()
    {
        std::lock_guard lock(mutex);
        return order;
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
    loader.requestThumbnails({}, {QStringLiteral("/f/a.jpg"), QStringLiteral("/f/b.jpg"), QStringLiteral("/f/c.jpg")});
    ASSERT_TRUE(waitUntil([&] { return decoder.started.available() > 0; }));

    loader.requestPreview(QStringLiteral("/f/x.jpg"));
    loader.requestThumbnails({QStringLiteral("/f/v.jpg")}, {QStringLiteral("/f/b.jpg"), QStringLiteral("/f/c.jpg")});
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
    loader.requestThumbnails({QStringLiteral("/old/a.jpg"), QStringLiteral("/old/b.jpg"), QStringLiteral("/old/c.jpg")});
    ASSERT_TRUE(waitUntil([&] { return decoder.started.available() > 0; }));

    loader.setFolder(QStringLiteral("/new"));
    loader.requestThumbnails({QStringLiteral("/new/n.jpg")});
    decoder.release.release();
    ASSERT_TRUE(waitUntil([&] { return idle(loader) && cache.image(QStringLiteral("/new/n.jpg")).has_value(); }));

    EXPECT_EQ(decoder.decoded(), (QStringList{QStringLiteral("T:/old/a.jpg"), QStringLiteral("T:/new/n.jpg")}));
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
    decoder.failing = {QStringLiteral("/f/bad.jpg")};
    ThumbnailLoader loader(cache, decoder.function(), oneThread());
    loader.setFolder(QStringLiteral("/f"));
    loader.requestThumbnails({QStringLiteral("/f/bad.jpg")});
    ASSERT_TRUE(waitUntil([&] { return loader.hasFailed(QStringLiteral("/f/bad.jpg"), PictureKind::thumbnail); }));
    loader.requestThumbnails({QStringLiteral("/f/bad.jpg")});
    ASSERT_TRUE(waitUntil([&] { return idle(loader); }));
    EXPECT_EQ(decoder.decoded().size(), 1);
    EXPECT_FALSE(cache.image(QStringLiteral("/f/bad.jpg")).has_value());
}

} // namespace
} // namespace lumaro::browse
