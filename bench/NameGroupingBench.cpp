// SPDX-License-Identifier: GPL-3.0-or-later
// Grouping and ungrouping a folder of 10,000 pictures: the walk alone, and the walk with every rename on disk.
#include "vision/NameGroupingService.h"

#include "platform/Log.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

using namespace lumaro::vision;

namespace {

constexpr int kFiles = 10000;

// A day's shooting from two cameras and a phone, a person in every third frame: about 5,000 groups.
struct Shoot
{
    QTemporaryDir dir;
    QStringList names;

    Shoot()
    {
        lumaro::platform::Log::silence();
        QJsonArray results;
        for (int i = 0; i < kFiles; ++i) {
            const QString stem = i % 7 == 0 ? QStringLiteral("DSC%1").arg(i, 5, 10, QLatin1Char('0'))
                                            : QStringLiteral("IMG_%1").arg(i, 4, 10, QLatin1Char('0'));
            const QString name = stem + (i % 5 == 0 ? QStringLiteral(".CR2") : QStringLiteral(".JPG"));
            names << name;
            QFile(dir.filePath(name)).open(QIODevice::WriteOnly);
            results.append(QJsonObject{{QStringLiteral("fileName"), name},
                                       {QStringLiteral("classification"),
                                        i % 3 == 0 ? QStringLiteral("MARK_PEOPLE") : QStringLiteral("MARK_OUTDOOR")}});
        }
        names.sort();
        QDir(dir.path()).mkdir(QStringLiteral("_index"));
        QFile index(dir.filePath(QStringLiteral("_index/vision_index_0101000000_shoot.json")));
        index.open(QIODevice::WriteOnly);
        index.write(QJsonDocument(QJsonObject{{QStringLiteral("generatedAt"), QStringLiteral("2024-01-01T00:00:00Z")},
                                              {QStringLiteral("results"), results}})
                        .toJson());
    }
};

Shoot& shoot()
{
    static Shoot instance;
    return instance;
}

QStringList namesAfter(const NameWorkResult& result)
{
    QStringList names;
    for (const NameRename& rename : result.renames)
        names << rename.to;
    return names;
}

void groupWalkOnly(benchmark::State& state)
{
    Shoot& s = shoot();
    NameWorkOptions dryRun;
    dryRun.dryRun = true;
    for (auto _ : state)
        benchmark::DoNotOptimize(NameGroupingService().groupFiles(s.dir.path(), s.names, dryRun));
    state.SetItemsProcessed(state.iterations() * kFiles);
}

void groupAndRename(benchmark::State& state)
{
    Shoot& s = shoot();
    const NameGroupingService service;
    for (auto _ : state) {
        const NameWorkResult grouped = service.groupFiles(s.dir.path(), s.names);
        state.PauseTiming();
        if (grouped.renames.size() != kFiles)
            state.SkipWithError("not every file was renamed");
        service.cleanPrefixes(s.dir.path(), namesAfter(grouped));
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kFiles);
}

void ungroupAndRename(benchmark::State& state)
{
    Shoot& s = shoot();
    const NameGroupingService service;
    for (auto _ : state) {
        state.PauseTiming();
        const QStringList grouped = namesAfter(service.groupFiles(s.dir.path(), s.names));
        state.ResumeTiming();
        if (service.cleanPrefixes(s.dir.path(), grouped).renames.size() != kFiles)
            state.SkipWithError("not every file was renamed back");
    }
    state.SetItemsProcessed(state.iterations() * kFiles);
}

} // namespace

BENCHMARK(groupWalkOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(groupAndRename)->Unit(benchmark::kMillisecond);
BENCHMARK(ungroupAndRename)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
