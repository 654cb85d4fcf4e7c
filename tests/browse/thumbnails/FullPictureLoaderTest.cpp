// SPDX-License-Identifier: GPL-3.0-or-later
// The loupe's full-size decodes: the picture on screen is decoded alone before the one ahead, and a picture
// that could not be read is tried again once the folder is read again.
#include "browse/thumbnails/FullPictureLoader.h"

#include "tests/support/TempFolder.h"

#include <QSemaphore>

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>

namespace lumaro::browse {
namespace {

using testing::waitUntil;

struct ScriptedDecoder
{
    std::mutex mutex;
    QStringList order;
    QString heldPath;
    QSemaphore started;
    QSemaphore release;
    std::atomic<bool> failing = false;

    FullPictureLoader::DecodeFunction function()
    {
        return [this](const QString& path, int) {
            {
                std::lock_guard lock(mutex);
                order.append(path);
            }
            if (path == heldPath) {
                started.release();
                release.acquire();
            }
            if (failing)
                return QImage();
            QImage image(8, 8, QImage::Format_RGB32);
            image.fill(Qt::blue);
            return image;
        };
    }
    QStringList decoded()
    {
        std::lock_guard lock(mutex);
        return order;
    }
};

TEST(FullPictureLoaderTest, ThePictureOnScreenIsDecodedAloneBeforeTheOneAhead)
{
    ScriptedDecoder decoder;
    decoder.heldPath = QStringLiteral("/f/1.jpg");
    FullPictureLoader loader(decoder.function());
    loader.request(QStringLiteral("/f/1.jpg"), {QStringLiteral("/f/2.jpg")});
    ASSERT_TRUE(decoder.started.tryAcquire(1, 5000));
    EXPECT_EQ(loader.runningCount(), 1) << "the one ahead takes a core from the picture on screen";
    decoder.release.release();
    ASSERT_TRUE(waitUntil([&] { return loader.image(QStringLiteral("/f/2.jpg")).has_value(); }));
    EXPECT_TRUE(loader.image(QStringLiteral("/f/1.jpg")).has_value());
    EXPECT_EQ(decoder.decoded(), (QStringList{QStringLiteral("/f/1.jpg"), QStringLiteral("/f/2.jpg")}));
}

TEST(FullPictureLoaderTest, AFailureIsTriedAgainAfterARefreshOnly)
{
    ScriptedDecoder decoder;
    decoder.failing = true; // still being copied in
    FullPictureLoader loader(decoder.function());
    const QString path = QStringLiteral("/f/copying.jpg");
    loader.request(path);
    ASSERT_TRUE(waitUntil([&] { return loader.hasFailed(path); }));
    decoder.failing = false; // the copy ends
    loader.request(path);
    EXPECT_EQ(loader.runningCount(), 0) << "a failure is not retried at every key press";

    loader.refresh();
    loader.request(path);
    ASSERT_TRUE(waitUntil([&] { return loader.image(path).has_value(); }));
    EXPECT_FALSE(loader.hasFailed(path));
    EXPECT_EQ(decoder.decoded().size(), 2);
}

} // namespace
} // namespace lumaro::browse
