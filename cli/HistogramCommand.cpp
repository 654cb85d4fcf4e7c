// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli histogram IMAGE: the tone histogram of a picture (luminance, red, green, blue) and its clipping,
// from the same decoded preview the app shows.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "platform/files/FileNameCodec.h"
#include "platform/picture/PictureReader.h"
#include "report/ToneHistogram.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

namespace {

// The long side of the app's preview, so that both count the same pixels.
constexpr int kPreviewSide = 1600;

QJsonArray binsJson(const report::ToneHistogram::Bins& bins)
{
    QJsonArray array;
    for (const quint32 count : bins)
        array.append(double(count));
    return array;
}

// Sixteen groups of sixteen levels each, so that a terminal line shows the shape.
QString groupedLine(const report::ToneHistogram::Bins& bins)
{
    QStringList groups;
    for (int group = 0; group < 16; ++group) {
        quint64 sum = 0;
        for (int level = group * 16; level < group * 16 + 16; ++level)
            sum += bins[std::size_t(level)];
        groups << QString::number(sum);
    }
    return groups.join(u' ');
}

} // namespace

int runHistogram(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("histogram"),
        QStringLiteral("The tone histogram of IMAGE (luminance, red, green, blue; 256 levels) and the share "
                       "of clipped shadows (all channels 0) and highlights (any channel 255)."));
    line.addPositional(QStringLiteral("IMAGE"), QStringLiteral("The picture."));
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto words = line.positional(1);
    if (!words)
        return exitUsage;
    if (words->size() > 1)
        return line.usageError(QStringLiteral("histogram takes one picture"));
    const QString path = words->constFirst();
    if (platform::FileNameCodec::isDirectory(path))
        return line.fail(escapedForLine(path) + QStringLiteral(": is a folder, not a picture"), exitUsage);
    if (!platform::FileNameCodec::isFile(path))
        return line.fail(escapedForLine(path) + QStringLiteral(": no such file"), exitUsage);

    const platform::DecodedPicture decoded = platform::PictureReader::read({path, kPreviewSide, true, 0});
    if (decoded.isNull())
        return line.fail(escapedForLine(path) + QStringLiteral(": cannot be decoded: ") + decoded.error,
                         exitUsage);
    const report::ToneHistogram histogram = report::ToneHistogram::of(decoded.image);

    QTextStream& out = standardOutput();
    if (line.json()) {
        const QJsonObject object{{QStringLiteral("file"), path},
                                 {QStringLiteral("width"), decoded.image.width()},
                                 {QStringLiteral("height"), decoded.image.height()},
                                 {QStringLiteral("pixels"), double(histogram.pixels)},
                                 {QStringLiteral("clippedShadowsPercent"), histogram.shadowPercent()},
                                 {QStringLiteral("clippedHighlightsPercent"), histogram.highlightPercent()},
                                 {QStringLiteral("luminance"), binsJson(histogram.luminance)},
                                 {QStringLiteral("red"), binsJson(histogram.red)},
                                 {QStringLiteral("green"), binsJson(histogram.green)},
                                 {QStringLiteral("blue"), binsJson(histogram.blue)}};
        out << QJsonDocument(object).toJson(QJsonDocument::Compact) << "\n";
    } else {
        out << escapedForLine(path) << ": " << decoded.image.width() << "x" << decoded.image.height() << ", "
            << histogram.pixels << " pixels\n";
        out << "  clipped shadows: " << QString::number(histogram.shadowPercent(), 'f', 2) << "%\n";
        out << "  clipped highlights: " << QString::number(histogram.highlightPercent(), 'f', 2) << "%\n";
        out << "  luminance (16 groups of 16 levels): " << groupedLine(histogram.luminance) << "\n";
        out << "  red: " << groupedLine(histogram.red) << "\n";
        out << "  green: " << groupedLine(histogram.green) << "\n";
        out << "  blue: " << groupedLine(histogram.blue) << "\n";
    }
    out.flush();
    return exitOk;
}

} // namespace lumaro::cli
