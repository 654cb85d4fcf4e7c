// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/thumbnails/ThumbnailCache.h"

#include "tests/support/LogCapture.h"

#include <QThread>

#include <gtest/gtest.h>

using namespace lumaro::browse;

namespace {

QImage tinyImage(int shade)
{
    QImage image(2, 2, QImage::Format_RGB32);
    image.fill(QColor(shade % 256, 0, 0));
    return image;
}

void fill(ThumbnailCache& cache, int count)
{
    for (int i = 0; i < count; ++i)
        cache.setImage(tinyImage(i), QStringLiteral("/p/%1.jpg").arg(i));
}

} // namespace

TEST(ThumbnailCache, HoldsAtMostTwoHundredOneEvictionPerStore)
{
    ThumbnailCache cache;
    fill(cache, 200);
    EXPECT_EQ(cache.count(), 200);
    cache.setImage(tinyImage(1), QStringLiteral("/p/new.jpg"));
    EXPECT_EQ(cache.count(), 200);
    EXPECT_TRUE(cache.image(QStringLiteral("/p/new.jpg")));
}

TEST(ThumbnailCache, StoringUnderAnExistingKeyWhenFullStillEvictsFirst)
{
    ThumbnailCache cache;
    fill(cache, 200);
    const QString key = QStringLiteral("/p/17.jpg");
    cache.setImage(tinyImage(99), key);
    // 199 + the replaced entry, or 199 when the evicted one was that very key.
    EXPECT_GE(cache.count(), 199);
    EXPECT_LE(cache.count(), 200);
    ASSERT_TRUE(cache.image(key));
    EXPECT_EQ(cache.image(key)->pixelColor(0, 0), QColor(99, 0, 0));
}

TEST(ThumbnailCache, FolderClearIsAPlainPrefixMatch)
{
    ThumbnailCache cache;
    cache.setImage(tinyImage(1), QStringLiteral("/p/x.jpg"));
    cache.setImage(tinyImage(2), QStringLiteral("/pq/y.jpg"));
    cache.setImage(tinyImage(3), QStringLiteral("/r/z.jpg"));
    lumaro::testing::LogCapture log;
    EXPECT_EQ(cache.clearFolder(QStringLiteral("/p")), 2);
    EXPECT_EQ(cache.count(), 1);
    EXPECT_TRUE(log.contains(QStringLiteral("ThumbnailCache - 清理文件夹缓存: /p, 清理了 2 个缓存项")));
}

TEST(ThumbnailCache, AMissIsCountedAndEveryTwoHundredOperationsPrintASummary)
{
    ThumbnailCache cache;
    lumaro::testing::LogCapture log;
    EXPECT_FALSE(cache.image(QStringLiteral("/missing.jpg")));
    EXPECT_EQ(cache.statistics().getCount, 1);
    fill(cache, 198);
    EXPECT_EQ(log.countStartingWith(QStringLiteral("PERF-SUMMARY-TCACHE: ")), 0);
    cache.image(QStringLiteral("/p/0.jpg"));
    ASSERT_EQ(log.countStartingWith(QStringLiteral("PERF-SUMMARY-TCACHE: get=2(avg=")), 1);
    const QString line = log.lines().last();
    EXPECT_TRUE(line.contains(QStringLiteral("), set=198(avg="))) << line.toStdString();
    EXPECT_TRUE(line.endsWith(QStringLiteral(" ms)")));
}

TEST(ThumbnailCache, ConcurrentStoresNeverExceedTheBound)
{
    ThumbnailCache cache;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back(QThread::create([&cache, t] {
            for (int i = 0; i < 500; ++i) {
                cache.setImage(tinyImage(i), QStringLiteral("/t%1/%2.jpg").arg(t).arg(i));
                cache.image(QStringLiteral("/t%1/%2.jpg").arg(t).arg(i / 2));
            }
        }));
        threads.back()->start();
    }
    for (auto& thread : threads)
        thread->wait();
    EXPECT_EQ(cache.count(), 200);
    EXPECT_EQ(cache.statistics().setCount, 2000);
    EXPECT_EQ(cache.statistics().getCount, 2000);
}
