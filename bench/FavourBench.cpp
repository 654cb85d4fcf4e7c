// SPDX-License-Identifier: GPL-3.0-or-later
// The favourites store: how long a heart click takes to save, and how long loading 50,000 records takes.
#include "library/FavourManager.h"
#include "platform/Log.h"
#include "platform/fakes/MemorySettingsStore.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace lumaro;

namespace {

// A store of `count` favourites written in one transaction, in a folder that lives as long as the process.
QString storeWith(int count)
{
    static QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("fav-%1.db").arg(count));
    if (QFile::exists(path))
        return path;
    platform::MemorySettingsStore settings;
    library::FavourManager manager(settings);
    manager.open(path);
    manager.dbManager().inTransaction([&] {
        for (int i = 0; i < count; ++i) {
            const QString file = QStringLiteral("/home/me/Pictures/shoot-%1/IMG_%2.JPG").arg(i / 500).arg(i, 5, 10, QLatin1Char('0'));
            manager.dbManager().execute(
                QStringLiteral("INSERT INTO favourites (file_path, file_name, is_favour, favour_type, created_at, "
                               "updated_at)\nVALUES (?, ?, ?, ?, ?, ?);"),
                {file, file.section(QLatin1Char('/'), -1), 1, i % 3 ? QVariant() : QVariant(QStringLiteral("SSS")),
                 1.7e9 + i, 1.7e9 + i});
        }
        return true;
    });
    return path;
}

void BM_ToggleFavourite(benchmark::State& state)
{
    platform::MemorySettingsStore settings;
    library::FavourManager manager(settings);
    manager.open(storeWith(int(state.range(0))));
    const QString picture = QStringLiteral("/home/me/Pictures/shoot-3/IMG_01700.JPG");
    bool on = false;
    for (auto _ : state)
        benchmark::DoNotOptimize(manager.setFavour(picture, on = !on).ok);
}
BENCHMARK(BM_ToggleFavourite)->Arg(1000)->Arg(50000)->Unit(benchmark::kMicrosecond);

void BM_LoadAllRecords(benchmark::State& state)
{
    platform::MemorySettingsStore settings;
    library::FavourManager manager(settings);
    manager.open(storeWith(int(state.range(0))));
    for (auto _ : state) {
        manager.loadAll();
        benchmark::DoNotOptimize(manager.records().size());
    }
}
BENCHMARK(BM_LoadAllRecords)->Arg(50000)->Unit(benchmark::kMillisecond);

void BM_FavouritesNewestFirst(benchmark::State& state)
{
    platform::MemorySettingsStore settings;
    library::FavourManager manager(settings);
    manager.open(storeWith(int(state.range(0))));
    for (auto _ : state)
        benchmark::DoNotOptimize(manager.favourites()->size());
}
BENCHMARK(BM_FavouritesNewestFirst)->Arg(50000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    platform::Log::silence();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
