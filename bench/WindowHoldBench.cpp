// SPDX-License-Identifier: GPL-3.0-or-later
// The window under a held arrow key, over a shoot of 600 camera JPEGs (24 MP, 160×120 EXIF thumbnails, a quarter
// turned by EXIF orientation 6 or 8), in each of the three modes:
//   hold → for 3 s (0.5 s before the key repeats, then 30 repeats a second, as X servers do by default): the time
//   from the key's release to the sharp preview of the selected picture (manual time), the longest stall of the
//   main thread while the key was held, whether the final preview is the selected picture;
//   scroll the 600 pictures end to end: the resident memory afterwards; and the CPU the idle window uses.
// The shoot is made once in $LUMARO_BENCH_SHOOT (default /tmp/lumaro-bench-shoot): four 24 MP frames in three
// orientations, hard-linked under 600 camera names, so it takes a few seconds and ~30 MB of disk.
// Run: window_hold_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
//      window_hold_bench --make-shoot=DIR   (only makes the shoot, for trying the app by hand)
#include "app/GridPreviewMode.h"
#include "app/FilmStripMode.h"
#include "app/MainWindow.h"
#include "app/PreviewView.h"
#include "app/ThumbnailScrollView.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailLoader.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>
#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <cstdlib>
#include <ctime>

using lumaro::app::MainWindow;

namespace {

constexpr int shootSize = 600;

QByteArray jpegOf(const QImage& image, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", quality);
    return bytes;
}

// A 6000×4000 frame with smooth light and a few shapes: a camera's size and decode cost, little disk.
QImage frame(int seed)
{
    QImage image(6000, 4000, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 6000, 4000);
    sky.setColorAt(0, QColor::fromHsv((seed * 70) % 360, 120, 230));
    sky.setColorAt(1, QColor::fromHsv((seed * 70 + 140) % 360, 200, 90));
    painter.fillRect(image.rect(), sky);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < 12; ++i) {
        painter.setBrush(QColor::fromHsv((seed * 50 + i * 30) % 360, 180, 200));
        painter.drawEllipse(QPoint(500 + i * 450, 1000 + (i * 733 + seed * 311) % 2200), 300 + i * 20, 220);
    }
    return image;
}

void writeExif(const QString& path, int orientation, const QByteArray& thumbnail)
{
    auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
    image->readMetadata();
    Exiv2::ExifData& exif = image->exifData();
    exif["Exif.Image.Make"] = "Canon";
    exif["Exif.Image.Model"] = "Canon EOS R6";
    exif["Exif.Image.Orientation"] = uint16_t(orientation);
    Exiv2::ExifThumb(exif).setJpegThumbnail(reinterpret_cast<const Exiv2::byte*>(thumbnail.constData()),
                                             long(thumbnail.size()));
    image->writeMetadata();
}

QString makeShoot(const QString& folder)
{
    QDir dir(folder);
    if (dir.entryList({QStringLiteral("DSC_*.JPG")}, QDir::Files).size() == shootSize)
        return folder;
    dir.mkpath(QStringLiteral("frames"));
    for (int seed = 0; seed < 4; ++seed) {
        const QImage image = frame(seed);
        const QByteArray bytes = jpegOf(image, 85);
        const QByteArray thumb = jpegOf(image.scaled(160, 120, Qt::KeepAspectRatio, Qt::SmoothTransformation), 80);
        for (int orientation : {1, 6, 8}) {
            const QString path = dir.filePath(QStringLiteral("frames/f%1_o%2.jpg").arg(seed).arg(orientation));
            QFile file(path);
            file.open(QIODevice::WriteOnly);
            file.write(bytes);
            file.close();
            writeExif(path, orientation, thumb);
        }
    }
    for (int i = 0; i < shootSize; ++i) {
        const int orientation = i % 8 == 3 ? 6 : i % 8 == 7 ? 8 : 1; // a quarter shot upright
        const QString name = dir.filePath(QStringLiteral("DSC_%1.JPG").arg(i + 1, 4, 10, QLatin1Char('0')));
        QFile::remove(name);
        const QString source = dir.filePath(QStringLiteral("frames/f%1_o%2.jpg").arg(i % 4).arg(orientation));
        // A hard link where the file system allows it: 600 names, 12 files on disk.
        if (std::system(qPrintable(QStringLiteral("ln '%1' '%2' 2>/dev/null").arg(source, name))) != 0)
            QFile::copy(source, name);
    }
    return folder;
}

QString shootFolder()
{
    const QString folder = qEnvironmentVariableIsSet("LUMARO_BENCH_SHOOT")
        ? qEnvironmentVariable("LUMARO_BENCH_SHOOT")
        : QStringLiteral("/tmp/lumaro-bench-shoot");
    return makeShoot(folder);
}

double residentMegabytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return 0;
}

// The window once for all benchmarks, with the shoot open.
MainWindow& window()
{
    static MainWindow* shown = [] {
        auto* w = new MainWindow;
        w->resize(1600, 1000);
        w->show();
        w->openFolder(shootFolder());
        QElapsedTimer clock;
        clock.start();
        while ((w->state().isLoadingImages || w->state().imageFiles().size() != shootSize) && clock.elapsed() < 20000)
            QApplication::processEvents(QEventLoop::AllEvents, 10);
        return w;
    }();
    return *shown;
}

QString selectedPath(MainWindow& w)
{
    const auto name = w.state().selectedImageFileName();
    return name ? QDir(*w.state().currentFolder()).filePath(*name) : QString();
}

// Whether the mode shows the selected picture sharp: its preview, or in the waterfall its tile.
bool showsSelectedSharp(MainWindow& w, int mode)
{
    const QString path = selectedPath(w);
    const lumaro::app::PreviewView* preview = nullptr;
    if (mode == MainWindow::gridMode)
        preview = &static_cast<lumaro::app::GridPreviewMode&>(w.mode(mode)).preview();
    else if (mode == MainWindow::filmStripMode)
        preview = &static_cast<lumaro::app::FilmStripMode&>(w.mode(mode)).preview();
    if (preview)
        return preview->isShowingPreview() && QDir::cleanPath(preview->shownPath()) == QDir::cleanPath(path);
    const auto index = w.state().selectedImageIndex();
    return index && !w.mode(mode).thumbnails().tileImage(*index).isNull();
}

void runUntil(const std::function<bool()>& done, int timeoutMs)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < timeoutMs)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
}

bool loaderIdle(MainWindow& w)
{
    return w.thumbnailLoader().queuedCount() == 0 && w.thumbnailLoader().runningCount() == 0;
}

void prepare(MainWindow& w, int mode)
{
    if (w.currentModeIndex() != mode)
        w.switchMode(mode);
    const auto index = w.state().selectedImageIndex().value_or(0);
    if (index > shootSize - 150)
        w.state().select(0);
    runUntil([&] { return loaderIdle(w) && showsSelectedSharp(w, mode); }, 20000);
}

void BM_HoldRight(benchmark::State& state)
{
    const int mode = int(state.range(0));
    MainWindow& w = window();
    for (auto _ : state) {
        prepare(w, mode);
        QWidget* target = &w.mode(mode).thumbnails();
        const int start = w.state().selectedImageIndex().value_or(0);
        QElapsedTimer clock;
        QEventLoop loop;
        qint64 lastTick = -1;
        qint64 longestGap = 0;
        qint64 releasedAt = -1;
        qint64 sharpAt = -1;
        QTimer ticker; // the main thread's pulse: a gap between ticks is a stall
        ticker.setTimerType(Qt::PreciseTimer);
        ticker.setInterval(1);
        QObject::connect(&ticker, &QTimer::timeout, [&] {
            const qint64 now = clock.nsecsElapsed();
            if (releasedAt < 0 && lastTick >= 0)
                longestGap = std::max(longestGap, now - lastTick);
            lastTick = now;
            if (releasedAt >= 0 && showsSelectedSharp(w, mode)) {
                sharpAt = now;
                loop.quit();
            }
        });
        int sent = 0;
        QTimer keys; // what the X server sends: a press, after 500 ms a repeat every 33 ms, the release at 3 s
        QObject::connect(&keys, &QTimer::timeout, [&] {
            const qint64 ms = clock.elapsed();
            if (ms >= 3000) {
                keys.stop();
                QCoreApplication::postEvent(target, new QKeyEvent(QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier));
                releasedAt = clock.nsecsElapsed();
                return;
            }
            if (ms >= 500 + 33 * sent) {
                QCoreApplication::postEvent(target, new QKeyEvent(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier,
                                                                  QString(), true));
                ++sent;
            }
        });
        QTimer::singleShot(20000, &loop, &QEventLoop::quit);
        clock.start();
        QCoreApplication::postEvent(target, new QKeyEvent(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier));
        ticker.start();
        keys.start(5);
        loop.exec();
        const bool sharp = sharpAt >= 0;
        state.SetIterationTime(sharp ? double(sharpAt - releasedAt) / 1e9 : 20.0);
        state.counters["stall_ms"] = double(longestGap) / 1e6;
        state.counters["moved"] = w.state().selectedImageIndex().value_or(0) - start;
        state.counters["final_ok"] = sharp && showsSelectedSharp(w, mode) ? 1 : 0;
    }
}

void BM_ScrollEndToEnd(benchmark::State& state)
{
    const int mode = int(state.range(0));
    MainWindow& w = window();
    for (auto _ : state) {
        prepare(w, mode);
        lumaro::app::ThumbnailScrollView& view = w.mode(mode).thumbnails();
        QScrollBar* bar = mode == MainWindow::filmStripMode ? view.horizontalScrollBar() : view.verticalScrollBar();
        bar->setValue(bar->minimum());
        int missing = 0;
        for (int at = bar->minimum();; at += bar->pageStep()) {
            bar->setValue(std::min(at, bar->maximum()));
            runUntil([&] { return loaderIdle(w); }, 20000);
            const QList<int> visible = view.visibleIndices();
            missing += int(std::count_if(visible.cbegin(), visible.cend(),
                                         [&](int i) { return view.tileImage(i).isNull(); }));
            if (at >= bar->maximum())
                break;
        }
        state.counters["rss_mb"] = residentMegabytes();
        state.counters["blank_tiles"] = missing;
    }
}

void BM_IdleCpu(benchmark::State& state)
{
    MainWindow& w = window();
    for (auto _ : state) {
        runUntil([&] { return loaderIdle(w); }, 20000);
        const std::clock_t before = std::clock();
        QEventLoop loop;
        QTimer::singleShot(3000, &loop, &QEventLoop::quit);
        loop.exec();
        state.counters["cpu_percent"] = 100.0 * double(std::clock() - before) / CLOCKS_PER_SEC / 3.0;
    }
}

} // namespace

BENCHMARK(BM_HoldRight)->DenseRange(0, 2)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
// Once each: a scroll through 600 pictures takes long on a busy machine, and memory is not a timing.
BENCHMARK(BM_ScrollEndToEnd)->DenseRange(0, 2)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IdleCpu)->Iterations(1)->Repetitions(1)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg(argv[i]);
        if (arg.startsWith("--make-shoot=")) {
            QCoreApplication app(argc, argv);
            std::printf("%s\n", qPrintable(makeShoot(QString::fromLocal8Bit(arg.mid(13)))));
            return 0;
        }
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Settings, Trash and caches of a throwaway home, never the user's.
    QTemporaryDir home;
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        qputenv(name, QFile::encodeName(home.path() + QLatin1Char('/') + QLatin1String(name)));
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
