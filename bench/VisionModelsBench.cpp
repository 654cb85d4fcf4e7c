// SPDX-License-Identifier: GPL-3.0-or-later
// The ceiling for `lumaro-cli index`: the analysis models alone on pictures decoded and scaled beforehand.
#include "vision/VisionPictureAnalyzer.h"

#include "platform/vision/AnalysisImage.h"

#include <QDir>
#include <QImage>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <vector>

using namespace lumaro;

namespace {

// The reference photos scaled to the size a 24-megapixel photo is analysed at, so each model sees the
// same pixel count as in the real run.
const std::vector<QImage>& pictures()
{
    static const std::vector<QImage> images = [] {
        std::vector<QImage> list;
        const QDir dir(qEnvironmentVariable("LUMARO_MODELS_DIR") + QStringLiteral("/test-images"));
        for (const QString& name : dir.entryList(QDir::Files, QDir::Name)) {
            if (auto decoded = platform::AnalysisImageReader::read(dir.filePath(name), 4096)) {
                // What a 6000×4000 JPEG decodes to for analysis (a quarter, see AnalysisImageReader).
                list.push_back(decoded->image.scaled(1500, 1000, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
            }
        }
        return list;
    }();
    return images;
}

void requirePictures(benchmark::State& state)
{
    if (pictures().empty())
        state.SkipWithError("no test pictures: set LUMARO_MODELS_DIR to ../shared/models");
}

void BM_Classification(benchmark::State& state)
{
    requirePictures(state);
    auto classifier = platform::makeSceneClassifier();
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(classifier->classify(pictures()[i++ % pictures().size()]));
    state.SetItemsProcessed(state.iterations());
}

void BM_Faces(benchmark::State& state)
{
    requirePictures(state);
    auto faces = platform::makeFaceDetector();
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(faces->detect(pictures()[i++ % pictures().size()]));
    state.SetItemsProcessed(state.iterations());
}

void BM_Text(benchmark::State& state)
{
    requirePictures(state);
    auto text = platform::makeTextRecognizer();
    size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(text->recognize(pictures()[i++ % pictures().size()]));
    state.SetItemsProcessed(state.iterations());
}

// All three per picture, one set of models per thread as the index run has per worker.
void BM_AllThree(benchmark::State& state)
{
    requirePictures(state);
    auto classifier = platform::makeSceneClassifier();
    auto faces = platform::makeFaceDetector();
    auto text = platform::makeTextRecognizer();
    size_t i = size_t(state.thread_index()) * 5;
    for (auto _ : state) {
        const QImage& picture = pictures()[i++ % pictures().size()];
        benchmark::DoNotOptimize(classifier->classify(picture));
        benchmark::DoNotOptimize(faces->detect(picture));
        benchmark::DoNotOptimize(text->recognize(picture));
    }
    state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK(BM_Classification)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_Faces)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_Text)->Unit(benchmark::kMillisecond)->MinTime(3.0);
BENCHMARK(BM_AllThree)->Unit(benchmark::kMillisecond)->MinTime(6.0)->Threads(2)->UseRealTime();

BENCHMARK_MAIN();
