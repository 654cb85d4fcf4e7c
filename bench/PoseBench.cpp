// SPDX-License-Identifier: GPL-3.0-or-later
// Milliseconds per picture of pose analysis on 24-megapixel JPEGs by stage: decode, the whole-picture look,
// the tiles, the faces, the object detector confirming weak sightings, the quality filter with the rules; and
// the naming rules alone.
#include "pose/PersonPoseEstimator.h"
#include "pose/PicturePoseAnalyzer.h"

#include <QGuiApplication>
#include <QImage>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

using namespace lumaro;

QString modelsDir()
{
    const QByteArray fromEnvironment = qgetenv("LUMARO_MODELS_DIR");
    return fromEnvironment.isEmpty() ? QStringLiteral(LUMARO_SHARED_MODELS_DIR)
                                     : QString::fromLocal8Bit(fromEnvironment);
}

// 6000×4000 JPEGs (quality 90) made once from the reference photos with people in them.
const QStringList& bigPhotos()
{
    static QTemporaryDir folder;
    static const QStringList paths = [] {
        QStringList made;
        for (const char* name : {"messi5.jpg", "basketball1.png", "astronaut.png", "horses.jpg"}) {
            const QImage source(modelsDir() + QStringLiteral("/test-images/") + QString::fromLatin1(name));
            const QImage big = source.scaled(6000, 4000, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            const QString path =
                folder.filePath(QString::fromLatin1(name).section(u'.', 0, 0) + QStringLiteral(".jpg"));
            if (big.save(path, "JPEG", 90))
                made << path;
        }
        return made;
    }();
    return paths;
}

void BM_PoseAnalysis24MP(benchmark::State& state)
{
    qputenv("LUMARO_MODELS_DIR", QFile::encodeName(modelsDir()));
    pose::PicturePoseAnalyzer analyzer;
    if (!analyzer.hasModel()) {
        state.SkipWithError(analyzer.modelProblem().toUtf8().constData());
        return;
    }
    const QStringList& photos = bigPhotos();
    double decode = 0, whole = 0, tiles = 0, faces = 0, objects = 0, rules = 0;
    qsizetype next = 0;
    for (auto _ : state) {
        const auto outcome = analyzer.analyse(photos.at(next++ % photos.size()));
        const auto* analysis = std::get_if<pose::PicturePoseAnalysis>(&outcome);
        if (!analysis) {
            state.SkipWithError("analysis failed");
            return;
        }
        decode += analysis->decodeMs;
        whole += analysis->wholePictureMs;
        tiles += analysis->tilesMs;
        faces += analysis->facesMs;
        objects += analysis->objectsMs;
        rules += analysis->rulesMs;
    }
    const double n = double(state.iterations());
    state.counters["decode_ms"] = decode / n;
    state.counters["whole_ms"] = whole / n;
    state.counters["tiles_ms"] = tiles / n;
    state.counters["faces_ms"] = faces / n;
    state.counters["objects_ms"] = objects / n;
    state.counters["rules_ms"] = rules / n;
}
BENCHMARK(BM_PoseAnalysis24MP)->Unit(benchmark::kMillisecond)->MinTime(3.0);

void BM_PoseRules(benchmark::State& state)
{
    // A standing person with every joint the rules read, as the detector delivers one.
    platform::JointDictionary joints;
    const auto put = [&joints](const char* key, double x, double y) {
        joints.insert(QString::fromLatin1(key), {QString::fromLatin1(key), QPointF(x, y), 0.8f});
    };
    put("left_upLeg", 0.45, 0.5), put("right_upLeg", 0.55, 0.5), put("left_leg", 0.44, 0.3),
        put("right_leg", 0.56, 0.3);
    put("left_foot", 0.40, 0.1), put("right_foot", 0.60, 0.1), put("left_eye", 0.48, 0.9),
        put("right_eye", 0.52, 0.9);
    put("left_ear", 0.46, 0.89), put("right_ear", 0.54, 0.89), put("left_shoulder", 0.42, 0.78);
    put("right_shoulder", 0.58, 0.78), put("left_forearm", 0.38, 0.65), put("right_forearm", 0.62, 0.65);
    const pose::PersonPoseEstimator estimator;
    const std::optional<QStringList> tags = QStringList{QStringLiteral("desk"), QStringLiteral("Notebook")};
    for (auto _ : state)
        benchmark::DoNotOptimize(estimator.evaluate(joints, tags));
}
BENCHMARK(BM_PoseRules);

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication::setAttribute(Qt::AA_Use96Dpi);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
