// SPDX-License-Identifier: GPL-3.0-or-later
// Folder cards of a folder with 1,000 subfolders of 20 camera JPEGs each (EXIF capture time, a colour tag on
// some): cold (every picture's EXIF and tags read, the cache written) and warm (the cache file read, each
// folder listed and its pictures stat'ed, nothing opened). The window shows the cards when a warm scan ends.
#include "browse/folders/FolderCardScanner.h"
#include "browse/state/FileSystemService.h"
#include "platform/Log.h"
#include "platform/XattrTagStore.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <exiv2/exiv2.hpp>

using lumaro::browse::FolderCardScanner;

namespace {

constexpr int kFolders = 1000;
constexpr int kPictures = 20;

// A small JPEG carrying "Exif.Photo.DateTimeOriginal" (written by exiv2 once, then copied into every folder).
QByteArray cameraJpeg(const QString& scratch)
{
    QImage image(64, 48, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    image.save(scratch, "JPG");
    auto exif = Exiv2::ImageFactory::open(scratch.toStdString());
    exif->readMetadata();
    exif->exifData()["Exif.Photo.DateTimeOriginal"] = "2024:05:01 10:00:00";
    exif->writeMetadata();
    QFile file(scratch);
    file.open(QIODevice::ReadOnly);
    return file.readAll();
}

const QString& parentFolder()
{
    static QTemporaryDir dir;
    static const QString path = [] {
        lumaro::platform::Log::silence();
        const QByteArray jpeg = cameraJpeg(dir.filePath(QStringLiteral("template.jpg")));
        for (int f = 0; f < kFolders; ++f) {
            const QString folder = dir.filePath(QStringLiteral("shoot_%1").arg(f, 4, 10, QLatin1Char('0')));
            QDir().mkpath(folder);
            for (int p = 0; p < kPictures; ++p) {
                const QString picture =
                    folder + QStringLiteral("/IMG_%1.JPG").arg(p, 4, 10, QLatin1Char('0'));
                QFile file(picture);
                file.open(QIODevice::WriteOnly);
                file.write(jpeg);
                file.close();
                if (p % 7 == 0)
                    lumaro::platform::XattrTagStore::shared().setTags(picture, {QStringLiteral("red")});
            }
        }
        return dir.path();
    }();
    return path;
}

void folderCards(benchmark::State& state, bool warm)
{
    const QString parent = parentFolder();
    const QStringList children = lumaro::browse::FileSystemService::shared().subfolders(parent);
    QTemporaryDir cache;
    FolderCardScanner scanner(nullptr, cache.path());
    if (warm)
        scanner.scan(parent, children);
    for (auto _ : state) {
        if (!warm) {
            state.PauseTiming();
            QFile::remove(scanner.cacheFile(parent));
            state.ResumeTiming();
        }
        benchmark::DoNotOptimize(scanner.scan(parent, children));
    }
    state.counters["folders"] = double(children.size());
}

void coldFolderCards(benchmark::State& state)
{
    folderCards(state, false);
}
void warmFolderCards(benchmark::State& state)
{
    folderCards(state, true);
}

} // namespace

BENCHMARK(coldFolderCards)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);
BENCHMARK(warmFolderCards)->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(5);
BENCHMARK_MAIN();
