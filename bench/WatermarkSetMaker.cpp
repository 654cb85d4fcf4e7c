// SPDX-License-Identifier: GPL-3.0-or-later
// Makes a folder of "saved social pictures" for bench/watermark-accuracy.sh: every photo of BACKGROUNDS,
// resized to a platform's size, stamped with a poster's identifier (Latin and Chinese handles, ID lines;
// corners and bottom; 40–80 % opacity; with and without shadow and logo; bold or regular, proportional or
// monospaced Noto CJK; some with the app's name on a line above; 1–3 % of the height) or left clean.
// truth.tsv names each picture's identifier (empty for the clean ones), and "faint" after it when the stamp
// is too faint for a person to read (white on white without a shadow: its letters stand less than
// kReadableStep grey levels off the picture). With FONTS, every stamp is drawn in one of the font files
// there instead of Noto CJK (a held-out set in fonts the reader was never tuned on). With "varied" after
// FONTS, stamps also sit farther in from the edges (1–6 % of the height, as apps that inset their mark) and
// a quarter of them are grey or black instead of white. With "resaved" there too ("varied,resaved"), every
// picture is then handled as a platform serves it: most downscaled to 1080 or 720 pixels on the long side,
// and recompressed once or twice at JPEG quality 60–85.
//   watermark_set_maker BACKGROUNDS OUT SEED POSTERS-FILE COPIES [FONTS [varied][,resaved]]
#include "tests/support/WatermarkStamp.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QImage>
#include <QRandomGenerator>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

using namespace lumaro::testing;

namespace {

constexpr int kReadableStep = 12;

// How far the stamp's letters stand off the picture: the 90th percentile of the grey-level change over the
// pixels it changed.
int stampStep(const QImage& before, const QImage& after)
{
    QList<int> steps;
    for (int y = 0; y < before.height(); ++y)
        for (int x = 0; x < before.width(); ++x)
            if (const int step = std::abs(qGray(after.pixel(x, y)) - qGray(before.pixel(x, y))); step > 0)
                steps << step;
    if (steps.isEmpty())
        return 0;
    std::sort(steps.begin(), steps.end());
    return steps[steps.size() * 9 / 10];
}

// `picture` as a platform serves it again: maybe smaller, recompressed once or twice. The last quality is
// the one the file is saved at.
QImage resaved(QImage picture, QRandomGenerator& random, int& quality)
{
    if (const int size = int(random.bounded(3)); size < 2) {
        const int longSide = size == 0 ? 1080 : 720;
        if (std::max(picture.width(), picture.height()) > longSide)
            picture = picture.scaled(longSide, longSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    const int generations = 1 + int(random.bounded(2));
    for (int i = 0; i < generations; ++i) {
        quality = 60 + int(random.bounded(26));
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        picture.save(&buffer, "JPEG", quality);
        picture.loadFromData(bytes, "JPEG");
    }
    return picture;
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc < 6 || argc > 8) {
        std::fprintf(
            stderr, "usage: watermark_set_maker BACKGROUNDS OUT SEED POSTERS-FILE COPIES [FONTS [varied][,resaved]]\n");
        return 2;
    }
    QStringList families;
    const QList<QByteArray> modes = argc == 8 ? QByteArray(argv[7]).split(',') : QList<QByteArray>();
    const bool varied = modes.contains("varied");
    const bool resave = modes.contains("resaved");
    if (argc >= 7) {
        const QDir fonts(QString::fromLocal8Bit(argv[6]));
        for (const QString& file : fonts.entryList({"*.ttf", "*.ttc", "*.otf"}, QDir::Files, QDir::Name))
            for (const QString& family : QFontDatabase::applicationFontFamilies(
                     QFontDatabase::addApplicationFont(fonts.filePath(file))))
                if (!families.contains(family))
                    families << family;
        if (families.isEmpty()) {
            std::fprintf(stderr, "watermark_set_maker: no font in %s\n", argv[6]);
            return 2;
        }
    }
    const QDir backgrounds(QString::fromLocal8Bit(argv[1]));
    const QDir out(QString::fromLocal8Bit(argv[2]));
    QDir().mkpath(out.path());
    QRandomGenerator random(quint32(QByteArray(argv[3]).toUInt()));
    QFile postersFile(QString::fromLocal8Bit(argv[4]));
    if (!postersFile.open(QIODevice::ReadOnly))
        return 2;
    // Each line: the identifier, a tab, the text the platform stamps, and optionally a tab and the app's
    // name, which half of its stamps carry on a line above.
    QList<QStringList> posters;
    for (const QString& line : QString::fromUtf8(postersFile.readAll()).split(QLatin1Char('\n')))
        if (line.contains(QLatin1Char('\t')))
            posters << line.split(QLatin1Char('\t'));
    const int copies = QByteArray(argv[5]).toInt();
    QFile truthFile(out.filePath(QStringLiteral("truth.tsv")));
    truthFile.open(QIODevice::WriteOnly | QIODevice::Truncate);
    QTextStream truth(&truthFile);
    int n = 0;
    for (const QString& name : backgrounds.entryList({"*.jpg", "*.png"}, QDir::Files, QDir::Name)) {
        const QImage photo(backgrounds.filePath(name));
        if (photo.isNull())
            continue;
        for (int copy = 0; copy < copies; ++copy) {
            const int longSide = 1080 + int(random.bounded(3)) * 260; // 1080, 1340, 1600
            QImage picture = photo.scaled(longSide, longSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            QString identifier;
            bool faint = false;
            if (random.bounded(5) != 0) { // one in five stays clean
                const QStringList& poster = posters[int(random.bounded(qsizetype(posters.size())))];
                identifier = poster[0];
                WatermarkStyle style;
                style.place = StampPlace(random.bounded(5));
                style.opacity = 0.4 + random.bounded(0.4);
                style.heightShare = 0.01 + random.bounded(0.02);
                style.shadow = random.bounded(2) == 1;
                style.logo = random.bounded(3) == 0;
                style.bold = random.bounded(3) != 0;
                style.monospaced = random.bounded(4) == 0;
                if (!families.isEmpty())
                    style.family = families[int(random.bounded(qsizetype(families.size())))];
                if (poster.size() > 2 && random.bounded(2) == 0)
                    style.platformLine = poster[2];
                if (varied) {
                    style.marginShare = 0.01 + random.bounded(0.05);
                    if (const int tint = int(random.bounded(8)); tint == 0)
                        style.colour = QColor(40, 40, 40);
                    else if (tint == 1)
                        style.colour = QColor(190, 190, 190);
                }
                const QImage stamped = stampWatermark(picture, poster[1], style);
                faint = stampStep(picture.convertToFormat(QImage::Format_RGB32), stamped) < kReadableStep;
                picture = stamped;
            }
            int quality = 90;
            if (resave)
                picture = resaved(picture, random, quality);
            const QString file = QStringLiteral("saved_%1.jpg").arg(++n, 3, 10, QLatin1Char('0'));
            picture.save(out.filePath(file), "JPEG", quality);
            truth << file << '\t' << identifier << (faint ? "\tfaint" : "") << '\n';
        }
    }
    return 0;
}
