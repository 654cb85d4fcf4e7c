// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ShootPace.h"

#include <QHash>

#include <algorithm>

namespace lumaro::report {

namespace {

struct Moment
{
    QDateTime time;
    QString camera;
    bool subSeconds = false;
};

QDateTime minuteOf(const QDateTime& time)
{
    const qint64 ms = time.toMSecsSinceEpoch();
    return QDateTime::fromMSecsSinceEpoch(ms - ((ms % 60000) + 60000) % 60000, Qt::UTC);
}

void findBursts(const QList<Moment>& moments, ShootingReport& report)
{
    QHash<QString, QList<Moment>> byCamera;
    for (const Moment& moment : moments)
        byCamera[moment.camera] << moment;
    for (const QList<Moment>& shots : std::as_const(byCamera)) {
        qsizetype start = 0;
        for (qsizetype i = 1; i <= shots.size(); ++i) {
            bool continues = false;
            if (i < shots.size()) {
                const double gap = double(shots.at(i - 1).time.msecsTo(shots.at(i).time)) / 1000.0;
                const bool fine = shots.at(i - 1).subSeconds && shots.at(i).subSeconds;
                continues =
                    gap <= (fine ? ShootingReport::burstGapSeconds : ShootingReport::wholeSecondBurstGap);
            }
            if (continues)
                continue;
            const qsizetype frames = i - start;
            if (frames >= ShootingReport::burstMinimumFrames) {
                const QDateTime& first = shots.at(start).time;
                report.bursts << Burst{first, int(frames),
                                       double(first.msecsTo(shots.at(i - 1).time)) / 1000.0};
                report.framesInBursts += int(frames);
            }
            start = i;
        }
    }
    std::sort(report.bursts.begin(), report.bursts.end(),
              [](const Burst& a, const Burst& b) { return a.start < b.start; });
}

} // namespace

void measurePace(const QList<Exposure>& exposures, ShootingReport& report)
{
    QList<Moment> moments;
    for (const Exposure& exposure : exposures) {
        if (exposure.facts.captured)
            moments << Moment{*exposure.facts.captured, exposure.camera, exposure.facts.hasSubSeconds};
        else
            ++report.exposuresWithoutTime;
    }
    if (moments.isEmpty())
        return;
    std::stable_sort(moments.begin(), moments.end(),
                     [](const Moment& a, const Moment& b) { return a.time < b.time; });
    report.first = moments.first().time;
    report.last = moments.last().time;
    report.shootingMinutes = double(report.first->msecsTo(*report.last)) / 60000.0;

    double breakMinutes = 0;
    for (qsizetype i = 0; i < moments.size(); ++i) {
        const QDateTime minute = minuteOf(moments.at(i).time);
        if (report.timeline.isEmpty() || report.timeline.last().minute != minute)
            report.timeline << MinuteCount{minute, 0};
        ++report.timeline.last().count;
        if (i == 0)
            continue;
        const double pause = double(moments.at(i - 1).time.msecsTo(moments.at(i).time)) / 60000.0;
        if (pause >= ShootingReport::breakMinutes) {
            report.gaps << TimeGap{moments.at(i - 1).time, moments.at(i).time};
            breakMinutes += pause;
        }
    }
    // A shoot shorter than a minute still took a minute of the photographer's time.
    const double count = double(moments.size());
    report.picturesPerMinute = count / std::max(1.0, report.shootingMinutes);
    report.activePicturesPerMinute = count / std::max(1.0, report.shootingMinutes - breakMinutes);
    report.busiestMinute =
        *std::max_element(report.timeline.begin(), report.timeline.end(),
                          [](const MinuteCount& a, const MinuteCount& b) { return a.count < b.count; });
    findBursts(moments, report);
}

} // namespace lumaro::report
