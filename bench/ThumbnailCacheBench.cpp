// SPDX-License-Identifier: GPL-3.0-or-later
// Cost of one ThumbnailCache lookup and store, from one thread and from four at once (the decoders and the views).
#include "browse/thumbnails/ThumbnailCache.h"

#include "platform/Log.h"

#include <benchmark/benchmark.h>

using lumaro::browse::ThumbnailCache;

namespace {

ThumbnailCache& sharedCache()
{
    static ThumbnailCache* cache = [] {
        lumaro::platform::Log::silence(); // the summary line every 200 operations is not what is measured
        auto* c = new ThumbnailCache;
        QImage image(256, 192, QImage::Format_RGB32);
        image.fill(Qt::gray);
        for (int i = 0; i < ThumbnailCache::maxCacheSize; ++i)
            c->setImage(image, QStringLiteral("/shoot/IMG_%1.JPG").arg(i, 4, 10, QLatin1Char('0')));
        return c;
    }();
    return *cache;
}

const QStringList& keys()
{
    static const QStringList list = [] {
        QStringList k;
        for (int i = 0; i < 400; ++i)
            k << QStringLiteral("/shoot/IMG_%1.JPG").arg(i, 4, 10, QLatin1Char('0'));
        return k;
    }();
    return list;
}

void getThumbnail(benchmark::State& state)
{
    ThumbnailCache& cache = sharedCache();
    qsizetype i = state.thread_index();
    for (auto _ : state) {
        benchmark::DoNotOptimize(cache.image(keys().at(i % keys().size())));
        i += 7;
    }
}

void setThumbnail(benchmark::State& state)
{
    ThumbnailCache& cache = sharedCache();
    QImage image(256, 192, QImage::Format_RGB32);
    image.fill(Qt::darkGray);
    qsizetype i = state.thread_index();
    for (auto _ : state) {
        cache.setImage(image, keys().at(i % keys().size()));
        i += 7;
    }
}

} // namespace

BENCHMARK(getThumbnail)->Threads(1)->Threads(4)->UseRealTime();
BENCHMARK(setThumbnail)->Threads(1)->Threads(4)->UseRealTime();
BENCHMARK_MAIN();
