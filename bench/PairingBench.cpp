// SPDX-License-Identifier: GPL-3.0-or-later
// The JPG–RAW pairing: matching N JPG names against N RAW names (10,000 … 100,000 a side), and the whole analysis
// of two real folders of that size (listing, sizes, matching).
#include "cards/PairingAnalyzer.h"
#include "platform/Log.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using lumaro::cards::PairingAnalyzer;

namespace {

// Half the RAW files have a JPG partner, in another case, as after a cull of a RAW+JPG shoot.
void makeNames(int count, QStringList& jpgs, QStringList& raws)
{
    jpgs.clear();
    raws.clear();
    for (int i = 0; i < count; ++i) {
        raws.append(QStringLiteral("IMG_%1.CR3").arg(i, 6, 10, QLatin1Char('0')));
        const int j = (i % 2 == 0) ? i : count + i;
        jpgs.append(QStringLiteral("img_%1.JPG").arg(j, 6, 10, QLatin1Char('0')));
    }
}

void matchNames(benchmark::State& state)
{
    QStringList jpgs;
    QStringList raws;
    makeNames(int(state.range(0)), jpgs, raws);
    for (auto _ : state) {
        int matchedJpgs = 0;
        auto matched = PairingAnalyzer::matchRawNames(jpgs, raws, &matchedJpgs);
        benchmark::DoNotOptimize(matched);
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(matchNames)->RangeMultiplier(2)->Range(10'000, 160'000)->Complexity()->Unit(benchmark::kMillisecond);

void analyzeFolders(benchmark::State& state)
{
    lumaro::platform::Log::silence();
    QTemporaryDir root;
    QStringList jpgs;
    QStringList raws;
    makeNames(int(state.range(0)), jpgs, raws);
    QDir().mkpath(root.filePath(QStringLiteral("jpg")));
    QDir().mkpath(root.filePath(QStringLiteral("raw")));
    for (const QString& name : jpgs)
        QFile(root.filePath(QStringLiteral("jpg/") + name)).open(QIODevice::WriteOnly);
    for (const QString& name : raws)
        QFile(root.filePath(QStringLiteral("raw/") + name)).open(QIODevice::WriteOnly);
    for (auto _ : state) {
        auto results = PairingAnalyzer::analyze(root.filePath(QStringLiteral("jpg")), root.filePath(QStringLiteral("raw")));
        benchmark::DoNotOptimize(results);
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(analyzeFolders)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

BENCHMARK_MAIN();
