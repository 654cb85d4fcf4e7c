// SPDX-License-Identifier: GPL-3.0-or-later
// The 100 % loupe in the real window over 24 MP camera-sized JPEGs (6000×4000, textured like a photo so the
// decode costs what a camera file costs):
//   first_view  — from the loupe key to the first paint of the full-size picture (decode, hand-back, paint);
//   next_looked — the next picture at 100 % after a look at the current one (0.6 s: its decode ran ahead);
//   next_at_once — the next picture at 100 % pressed the moment the current one is sharp.
// The pictures are made once in $LUMARO_BENCH_LOUPE (default /tmp/lumaro-bench-loupe).
// Run: loupe_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
#include "app/BrowseMode.h"
#include "app/LoupeView.h"
#include "app/MainWindow.h"
#include "app/ThumbnailScrollView.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailLoader.h"
#include "platform/picture/PictureReader.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

using lumaro::app::MainWindow;

namespace {

constexpr int frameCount = 8;

// A gradient, shapes and fine grain: the grain is what makes a camera JPEG's entropy decoding cost.
QImage frame(int seed)
{
    QImage image(6000, 4000, QImage::Format_RGB32);
    {
        QPainter painter(&image);
        QLinearGradient light(0, 0, 6000, 4000);
        light.setColorAt(0, QColor::fromHsv((seed * 70) % 360, 110, 230));
        light.setColorAt(1, QColor::fromHsv((seed * 70 + 140) % 360, 190, 80));
        painter.fillRect(image.rect(), light);
        painter.setRenderHint(QPainter::Antialiasing);
        for (int i = 0; i < 20; ++i) {
            painter.setBrush(QColor::fromHsv((seed * 50 + i * 30) % 360, 170, 200));
            painter.drawEllipse(QPoint(300 + i * 280, 600 + (i * 733 + seed * 311) % 2800), 200 + i * 10,
                                160);
        }
    }
    QRandomGenerator grain(quint32(seed + 1));
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int n = int(grain.bounded(17u)) - 8;
            const QRgb p = line[x];
            line[x] = qRgb(std::clamp(qRed(p) + n, 0, 255), std::clamp(qGreen(p) + n, 0, 255),
                           std::clamp(qBlue(p) + n, 0, 255));
        }
    }
    return image;
}

QString folder()
{
    const QString path = qEnvironmentVariableIsSet("LUMARO_BENCH_LOUPE")
                             ? qEnvironmentVariable("LUMARO_BENCH_LOUPE")
                             : QStringLiteral("/tmp/lumaro-bench-loupe");
    QDir dir(path);
    dir.mkpath(QStringLiteral("."));
    for (int i = 0; i < frameCount; ++i) {
        const QString name = dir.filePath(QStringLiteral("IMG_%1.JPG").arg(i + 1, 4, 10, QLatin1Char('0')));
        if (!QFileInfo::exists(name))
            frame(i).save(name, "JPEG", 92);
    }
    return path;
}

// Sleeps between events (a busy loop would take a core from the decoders on a two-core machine) and looks
// at `done` every millisecond.
void runUntil(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    if (done())
        return;
    QEventLoop loop;
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, &loop, [&] {
        if (done() || clock.elapsed() >= timeoutMs)
            loop.quit();
    });
    tick.start(1);
    loop.exec();
}

void pause(int ms)
{
    runUntil([] { return false; }, ms);
}

MainWindow& window()
{
    static MainWindow* shown = [] {
        auto* w = new MainWindow;
        w->resize(1600, 1000);
        w->show();
        w->openFolder(folder());
        runUntil([w] { return !w->state().isLoadingImages && w->state().imageFiles().size() == frameCount; },
                 20000);
        pause(3000); // thumbnails and the first preview settle
        return w;
    }();
    return *shown;
}

void press(MainWindow& w, int key)
{
    QWidget* target = &w.mode(w.currentModeIndex()).thumbnails();
    QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(target, &down);
    QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
    QApplication::sendEvent(target, &up);
}

// Waits for the full-size picture of the selection and paints it once; the seconds since `clock` started.
double untilSharp(MainWindow& w, const QElapsedTimer& clock)
{
    const QString wanted = QDir(*w.state().currentFolder()).filePath(*w.state().selectedImageFileName());
    runUntil([&] { return w.loupe().isShowingFullSize() && w.loupe().shownPath() == wanted; }, 20000);
    w.loupe().repaint();
    return double(clock.nsecsElapsed()) / 1e9;
}

// Starts each round on a picture the loupe has not decoded, with the decoders idle.
void startAt(MainWindow& w, int index)
{
    if (w.loupe().isOpen())
        press(w, Qt::Key_Escape);
    pause(900); // decodes already running finish (they cannot be taken back)
    w.state().select(index % (frameCount - 1));
    runUntil(
        [&] { return w.thumbnailLoader().queuedCount() == 0 && w.thumbnailLoader().runningCount() == 0; },
        5000);
}

void BM_LoupeFirstView(benchmark::State& state)
{
    MainWindow& w = window();
    int round = 0;
    for (auto _ : state) {
        startAt(w, round++);
        QElapsedTimer clock;
        clock.start();
        press(w, Qt::Key_Z);
        state.SetIterationTime(untilSharp(w, clock));
    }
}

void BM_LoupeNext(benchmark::State& state, int lookMs)
{
    MainWindow& w = window();
    int round = 0;
    for (auto _ : state) {
        startAt(w, round++);
        press(w, Qt::Key_Z);
        QElapsedTimer first;
        first.start();
        untilSharp(w, first);
        pause(lookMs);
        QElapsedTimer clock;
        clock.start();
        press(w, Qt::Key_Right);
        state.SetIterationTime(untilSharp(w, clock));
    }
}

// The main thread's share: one paint of the loupe at 100 % (a drag or a key repaints it).
void BM_LoupePaint(benchmark::State& state)
{
    MainWindow& w = window();
    startAt(w, 0);
    press(w, Qt::Key_Z);
    QElapsedTimer first;
    first.start();
    untilSharp(w, first);
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        w.loupe().repaint();
        state.SetIterationTime(double(clock.nsecsElapsed()) / 1e9);
    }
}

// The decode alone, on this thread: what the first view cannot go below.
void BM_FullDecode(benchmark::State& state)
{
    const QString path = QDir(folder()).filePath(QStringLiteral("IMG_0001.JPG"));
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        const QImage image = lumaro::platform::PictureReader::read({path, 0, false, 0}).image;
        benchmark::DoNotOptimize(image.constBits());
        state.SetIterationTime(double(clock.nsecsElapsed()) / 1e9);
    }
}

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n == 0 ? 0 : n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// The same decode side by side with `djpeg` (libjpeg-turbo's own tool, writing to /dev/null) on the same
// file, turn about, so both meet the same load on a shared machine: the medians and our ratio as counters.
void BM_FullDecodeVsDjpeg(benchmark::State& state)
{
    const QString path = QDir(folder()).filePath(QStringLiteral("IMG_0002.JPG"));
    std::vector<double> ours, peer;
    for (auto _ : state) {
        QElapsedTimer clock;
        clock.start();
        const QImage image = lumaro::platform::PictureReader::read({path, 0, false, 0}).image;
        benchmark::DoNotOptimize(image.constBits());
        ours.push_back(double(clock.nsecsElapsed()) / 1e6);
        clock.restart();
        QProcess djpeg;
        djpeg.start(QStringLiteral("djpeg"), {QStringLiteral("-outfile"), QStringLiteral("/dev/null"), path});
        if (!djpeg.waitForFinished(60000) || djpeg.exitCode() != 0) {
            state.SkipWithError("djpeg is not installed or failed");
            return;
        }
        peer.push_back(double(clock.nsecsElapsed()) / 1e6);
        state.SetIterationTime(ours.back() / 1e3);
    }
    state.counters["ours_ms"] = medianOf(ours);
    state.counters["djpeg_ms"] = medianOf(peer);
    state.counters["ratio"] = medianOf(ours) / std::max(1e-9, medianOf(peer));
}

} // namespace

BENCHMARK(BM_FullDecodeVsDjpeg)
    ->Name("loupe/decode_24mp_vs_djpeg")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(9);
BENCHMARK(BM_FullDecode)
    ->Name("loupe/decode_24mp")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(6);
BENCHMARK(BM_LoupePaint)
    ->Name("loupe/paint_100")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(10);
BENCHMARK(BM_LoupeFirstView)
    ->Name("loupe/first_view")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(6);
BENCHMARK_CAPTURE(BM_LoupeNext, looked, 600)
    ->Name("loupe/next_looked")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(6);
BENCHMARK_CAPTURE(BM_LoupeNext, at_once, 0)
    ->Name("loupe/next_at_once")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(6);

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM",
            qgetenv("QT_QPA_PLATFORM").isEmpty() ? "offscreen" : qgetenv("QT_QPA_PLATFORM"));
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
