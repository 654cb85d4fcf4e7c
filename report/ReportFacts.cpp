// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ReportFacts.h"

#include <QStringList>

namespace lumaro::report {

namespace {

QString timeText(const QDateTime& time)
{
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString share(int part, int whole)
{
    return whole > 0 ? QStringLiteral("%1 (%2%)").arg(part).arg(QString::number(100.0 * part / whole, 'f', 1))
                     : QString::number(part);
}

QString durationText(double minutes)
{
    if (minutes < 60)
        return QStringLiteral("%1 min").arg(QString::number(minutes, 'f', 1));
    const int whole = int(minutes);
    return QStringLiteral("%1 h %2 min").arg(whole / 60).arg(whole % 60);
}

QString counterRange(const std::optional<qint64>& first, const std::optional<qint64>& last)
{
    return first && last ? QStringLiteral("%1–%2 (%3)").arg(*first).arg(*last).arg(*last - *first + 1)
                         : QString();
}

void addShoot(const ShootingReport& r, QList<ReportFact>& facts)
{
    const QString s = QStringLiteral("Shoot");
    facts << ReportFact{s, QStringLiteral("Folder"),
                        r.folder + (r.deep ? QStringLiteral(" (and sub-folders)") : QString())};
    facts << ReportFact{s, QStringLiteral("Exposures"), QString::number(r.exposures)};
    facts << ReportFact{
        s, QStringLiteral("Files"),
        QStringLiteral("%1 (%2 exposures kept as JPEG + RAW or more)").arg(r.files).arg(r.pairedExposures)};
    if (r.unreadable > 0)
        facts << ReportFact{s, QStringLiteral("Unreadable files"), QString::number(r.unreadable)};
    if (r.first && r.last)
        facts << ReportFact{s, QStringLiteral("Date range"),
                            timeText(*r.first) + QStringLiteral(" → ") + timeText(*r.last)};
    if (r.exposuresWithoutTime > 0)
        facts << ReportFact{s, QStringLiteral("Without capture time"),
                            QString::number(r.exposuresWithoutTime)};
    const int oriented = r.landscape + r.portrait + r.square + r.orientationUnknown;
    facts << ReportFact{s, QStringLiteral("Landscape"), share(r.landscape, oriented)};
    facts << ReportFact{s, QStringLiteral("Portrait"), share(r.portrait, oriented)};
    facts << ReportFact{s, QStringLiteral("Square"), share(r.square, oriented)};
    if (r.orientationUnknown > 0)
        facts << ReportFact{s, QStringLiteral("Orientation unknown"), share(r.orientationUnknown, oriented)};
}

void addPace(const ShootingReport& r, QList<ReportFact>& facts)
{
    const QString s = QStringLiteral("Pace");
    if (!r.first)
        return;
    facts << ReportFact{s, QStringLiteral("Shooting time"), durationText(r.shootingMinutes)};
    facts << ReportFact{s, QStringLiteral("Pictures per minute"),
                        QStringLiteral("%1 (%2 without the breaks)")
                            .arg(QString::number(r.picturesPerMinute, 'f', 2),
                                 QString::number(r.activePicturesPerMinute, 'f', 2))};
    if (r.busiestMinute)
        facts << ReportFact{s, QStringLiteral("Busiest minute"),
                            QStringLiteral("%1 with %2 exposures")
                                .arg(r.busiestMinute->minute.toString(QStringLiteral("yyyy-MM-dd HH:mm")))
                                .arg(r.busiestMinute->count)};
    int longest = 0;
    for (const Burst& burst : r.bursts)
        longest = std::max(longest, burst.frames);
    facts << ReportFact{s, QStringLiteral("Bursts"),
                        r.bursts.isEmpty() ? QStringLiteral("none")
                                           : QStringLiteral("%1, %2 frames in all, longest %3 frames")
                                                 .arg(r.bursts.size())
                                                 .arg(r.framesInBursts)
                                                 .arg(longest)};
    QStringList gaps;
    for (const TimeGap& gap : r.gaps)
        gaps << QStringLiteral("%1 → %2 (%3)")
                    .arg(gap.from.toString(QStringLiteral("HH:mm")), gap.to.toString(QStringLiteral("HH:mm")),
                         durationText(double(gap.from.msecsTo(gap.to)) / 60000.0));
    facts << ReportFact{s, QStringLiteral("Breaks of %1 min or more").arg(ShootingReport::breakMinutes),
                        gaps.isEmpty() ? QStringLiteral("none") : gaps.join(QStringLiteral("; "))};
}

void addGear(const ShootingReport& r, QList<ReportFact>& facts)
{
    const QString s = QStringLiteral("Gear");
    for (const CameraUse& camera : r.cameras) {
        QString value = QStringLiteral("%1 exposures").arg(camera.exposures);
        if (!camera.serial.isEmpty())
            value += QStringLiteral(", serial ") + camera.serial;
        const QString shutter = counterRange(camera.firstShutterCount, camera.lastShutterCount);
        value += shutter.isEmpty() ? QStringLiteral(", no shutter counter in its files")
                                   : QStringLiteral(", shutter counter ") + shutter;
        const QString numbers = counterRange(camera.firstImageNumber, camera.lastImageNumber);
        if (!numbers.isEmpty() && shutter.isEmpty())
            value += QStringLiteral(", file numbers ") + numbers;
        facts << ReportFact{s, QStringLiteral("Camera ") + camera.name, value};
    }
    for (const LensUse& lens : r.lenses)
        facts << ReportFact{
            s, QStringLiteral("Lens ") + lens.name,
            QStringLiteral("%1 exposures").arg(lens.exposures) +
                (lens.serial.isEmpty() ? QString() : QStringLiteral(", serial ") + lens.serial)};
    facts << ReportFact{s, QStringLiteral("Flash"),
                        QStringLiteral("fired %1, not fired %2, unknown %3")
                            .arg(r.flashFired)
                            .arg(r.flashNotFired)
                            .arg(r.flashUnknown)};
}

void addCulling(const ShootingReport& r, QList<ReportFact>& facts)
{
    const QString s = QStringLiteral("Culling");
    facts << ReportFact{s, QStringLiteral("Kept"), QString::number(r.kept)};
    QStringList colours;
    for (auto it = r.taggedByColour.begin(); it != r.taggedByColour.end(); ++it)
        colours << QStringLiteral("%1 %2").arg(it.key()).arg(it.value());
    facts << ReportFact{
        s, QStringLiteral("Tagged by colour"),
        colours.isEmpty() ? QStringLiteral("none")
                          : QStringLiteral("%1 (%2)").arg(r.tagged).arg(colours.join(QStringLiteral(", ")))};
    if (!r.hasRatings) {
        facts << ReportFact{s, QStringLiteral("Rated"),
                            QStringLiteral("no ratings in these files or their XMP sidecars")};
    } else {
        QStringList stars;
        for (auto it = r.ratings.begin(); it != r.ratings.end(); ++it)
            stars << (it.key() == -1 ? QStringLiteral("rejected %1").arg(it.value())
                                     : QStringLiteral("%1★ %2").arg(it.key()).arg(it.value()));
        facts << ReportFact{s, QStringLiteral("Rated"),
                            QStringLiteral("%1 (%2)").arg(r.rated).arg(stars.join(QStringLiteral(", ")))};
    }
    if (r.deletedThisSession)
        facts << ReportFact{s, QStringLiteral("Deleted this session"),
                            QString::number(*r.deletedThisSession)};
}

} // namespace

QList<ReportFact> reportFacts(const ShootingReport& report)
{
    QList<ReportFact> facts;
    addShoot(report, facts);
    addPace(report, facts);
    addGear(report, facts);
    addCulling(report, facts);
    return facts;
}

} // namespace lumaro::report
