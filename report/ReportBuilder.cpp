// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ReportBuilder.h"

#include "report/ExposureGrouper.h"
#include "report/ShootPace.h"

#include <QMap>

#include <cmath>

namespace lumaro::report {

namespace {

// Counts by a numeric key so that bars come in the order of the values (ISO 100 before ISO 1600).
class Tally
{
public:
    void add(double key, const QString& label)
    {
        auto& entry = m_counts[key];
        entry.label = label;
        ++entry.count;
    }
    QList<CountedValue> values() const { return m_counts.values(); }
    qsizetype size() const { return m_counts.size(); }

private:
    QMap<double, CountedValue> m_counts;
};

// Exact focal lengths read best for primes and a few zoom stops; a zoom used all along its range would give
// dozens of bars, so then the lengths are put in the usual ranges.
QList<CountedValue> focalBars(const QList<int>& lengths)
{
    Tally exact;
    for (const int mm : lengths)
        exact.add(mm, QStringLiteral("%1 mm").arg(mm));
    if (exact.size() <= 16)
        return exact.values();
    static const int edges[] = {14, 20, 28, 35, 50, 70, 105, 135, 200, 300, 400};
    Tally ranges;
    for (const int mm : lengths) {
        int low = 0;
        QString label;
        for (const int edge : edges) {
            if (mm <= edge) {
                label = low == 0 ? QStringLiteral("≤%1 mm").arg(edge)
                                 : QStringLiteral("%1–%2 mm").arg(low + 1).arg(edge);
                break;
            }
            low = edge;
        }
        if (label.isEmpty())
            label = QStringLiteral(">%1 mm").arg(low);
        ranges.add(low, label);
    }
    return ranges.values();
}

void countSettings(const QList<Exposure>& exposures, ShootingReport& report)
{
    Tally isos, apertures, shutters;
    QList<int> focal;
    int equivalents = 0;
    for (const Exposure& exposure : exposures) {
        const platform::CaptureMetadata& m = exposure.facts;
        if (m.iso)
            isos.add(*m.iso, QStringLiteral("ISO %1").arg(*m.iso));
        if (m.fNumber) {
            const double f = std::round(*m.fNumber * 10.0) / 10.0;
            apertures.add(f, QStringLiteral("f/") + QString::number(f));
        }
        if (m.exposureSeconds)
            shutters.add(*m.exposureSeconds, ReportBuilder::shutterLabel(*m.exposureSeconds));
        if (m.focalLength35mm) {
            focal << *m.focalLength35mm;
            ++equivalents;
        } else if (m.focalLength) {
            focal << int(std::lround(*m.focalLength));
        } else {
            ++report.focalLengthUnknown;
        }
        if (!m.flashFired)
            ++report.flashUnknown;
        else if (*m.flashFired)
            ++report.flashFired;
        else
            ++report.flashNotFired;
    }
    report.isos = isos.values();
    report.apertures = apertures.values();
    report.shutterSpeeds = shutters.values();
    report.focalLengths = focalBars(focal);
    report.focalLengthsAre35mm = !focal.isEmpty() && equivalents == focal.size();
}

void countOrientation(const QList<Exposure>& exposures, ShootingReport& report)
{
    for (const Exposure& exposure : exposures) {
        const int width = exposure.facts.uprightWidth();
        const int height = exposure.facts.uprightHeight();
        if (width <= 0 || height <= 0)
            ++report.orientationUnknown;
        else if (width == height)
            ++report.square;
        else if (width > height)
            ++report.landscape;
        else
            ++report.portrait;
    }
}

void countGear(const QList<Exposure>& exposures, ShootingReport& report)
{
    QMap<QString, CameraUse> cameras;
    QMap<QString, LensUse> lenses;
    for (const Exposure& exposure : exposures) {
        const platform::CaptureMetadata& m = exposure.facts;
        if (!exposure.camera.isEmpty()) {
            CameraUse& camera = cameras[exposure.camera + u'\n' + m.bodySerial];
            camera.name = exposure.camera;
            camera.serial = m.bodySerial;
            ++camera.exposures;
            auto widen = [](std::optional<qint64>& low, std::optional<qint64>& high,
                            const std::optional<qint64>& value) {
                if (!value)
                    return;
                low = low ? std::min(*low, *value) : *value;
                high = high ? std::max(*high, *value) : *value;
            };
            widen(camera.firstShutterCount, camera.lastShutterCount, m.shutterCount);
            widen(camera.firstImageNumber, camera.lastImageNumber, m.imageNumber);
        }
        if (!m.lens.isEmpty()) {
            LensUse& lens = lenses[m.lens + u'\n' + m.lensSerial];
            lens.name = m.lens;
            lens.serial = m.lensSerial;
            ++lens.exposures;
        }
    }
    report.cameras = cameras.values();
    report.lenses = lenses.values();
    auto byUse = [](const auto& a, const auto& b) { return a.exposures > b.exposures; };
    std::stable_sort(report.cameras.begin(), report.cameras.end(), byUse);
    std::stable_sort(report.lenses.begin(), report.lenses.end(), byUse);
}

void countCulling(const QList<ShotFile>& files, const QList<Exposure>& exposures, ShootingReport& report)
{
    static const QStringList colours{QStringLiteral("red"),    QStringLiteral("yellow"),
                                     QStringLiteral("orange"), QStringLiteral("green"),
                                     QStringLiteral("blue"),   QStringLiteral("purple")};
    report.kept = int(exposures.size());
    for (const Exposure& exposure : exposures) {
        QSet<QString> tags;
        std::optional<int> rating;
        for (const int index : exposure.files) {
            const ShotFile& file = files.at(index);
            for (const QString& tag : file.tags)
                tags.insert(tag.toLower());
            // A sidecar is where an editor writes its latest rating; it wins over the file's own.
            const std::optional<int> own = file.sidecarRating ? file.sidecarRating : file.metadata.rating;
            if (own && (!rating || file.sidecarRating))
                rating = own;
        }
        bool anyColour = false;
        for (const QString& colour : colours) {
            if (tags.contains(colour)) {
                ++report.taggedByColour[colour];
                anyColour = true;
            }
        }
        report.tagged += anyColour ? 1 : 0;
        if (!rating)
            continue;
        report.hasRatings = true;
        if (*rating == -1 || (*rating >= 1 && *rating <= 5))
            ++report.ratings[*rating];
        if (*rating >= 1 && *rating <= 5)
            ++report.rated;
    }
}

} // namespace

QString ReportBuilder::shutterLabel(double seconds)
{
    if (seconds >= 0.3)
        return QString::number(std::round(seconds * 10.0) / 10.0) + QStringLiteral(" s");
    return QStringLiteral("1/%1 s").arg(std::lround(1.0 / seconds));
}

ShootingReport ReportBuilder::build(const QString& folder, bool deep, const ScanResult& scan)
{
    ShootingReport report;
    report.folder = folder;
    report.deep = deep;
    report.files = int(scan.files.size());
    report.unreadable = int(scan.failures.size());
    const QList<Exposure> exposures = ExposureGrouper::group(scan.files);
    report.exposures = int(exposures.size());
    for (const Exposure& exposure : exposures)
        report.pairedExposures += exposure.files.size() > 1 ? 1 : 0;
    measurePace(exposures, report);
    countOrientation(exposures, report);
    countSettings(exposures, report);
    countGear(exposures, report);
    countCulling(scan.files, exposures, report);
    return report;
}

} // namespace lumaro::report
