// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ReportJson.h"

#include <QJsonArray>

namespace lumaro::report {

namespace {

QJsonValue timeJson(const std::optional<QDateTime>& time)
{
    return time ? QJsonValue(time->toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss.zzz"))) : QJsonValue();
}

QJsonValue numberJson(const std::optional<qint64>& value)
{
    return value ? QJsonValue(double(*value)) : QJsonValue();
}

QJsonArray countsJson(const QList<CountedValue>& values)
{
    QJsonArray array;
    for (const CountedValue& value : values)
        array.append(
            QJsonObject{{QStringLiteral("label"), value.label}, {QStringLiteral("count"), value.count}});
    return array;
}

QJsonObject paceJson(const ShootingReport& r)
{
    QJsonArray timeline;
    for (const MinuteCount& minute : r.timeline)
        timeline.append(QJsonObject{{QStringLiteral("minute"), timeJson(minute.minute)},
                                    {QStringLiteral("count"), minute.count}});
    QJsonArray bursts;
    for (const Burst& burst : r.bursts)
        bursts.append(QJsonObject{{QStringLiteral("start"), timeJson(burst.start)},
                                  {QStringLiteral("frames"), burst.frames},
                                  {QStringLiteral("seconds"), burst.seconds}});
    QJsonArray gaps;
    for (const TimeGap& gap : r.gaps)
        gaps.append(QJsonObject{{QStringLiteral("from"), timeJson(gap.from)},
                                {QStringLiteral("to"), timeJson(gap.to)},
                                {QStringLiteral("minutes"), double(gap.from.msecsTo(gap.to)) / 60000.0}});
    QJsonObject busiest;
    if (r.busiestMinute)
        busiest = {{QStringLiteral("minute"), timeJson(r.busiestMinute->minute)},
                   {QStringLiteral("count"), r.busiestMinute->count}};
    return {{QStringLiteral("first"), timeJson(r.first)},
            {QStringLiteral("last"), timeJson(r.last)},
            {QStringLiteral("shootingMinutes"), r.shootingMinutes},
            {QStringLiteral("picturesPerMinute"), r.picturesPerMinute},
            {QStringLiteral("activePicturesPerMinute"), r.activePicturesPerMinute},
            {QStringLiteral("busiestMinute"), r.busiestMinute ? QJsonValue(busiest) : QJsonValue()},
            {QStringLiteral("timeline"), timeline},
            {QStringLiteral("bursts"), bursts},
            {QStringLiteral("framesInBursts"), r.framesInBursts},
            {QStringLiteral("gaps"), gaps}};
}

QJsonObject gearJson(const ShootingReport& r)
{
    QJsonArray cameras;
    for (const CameraUse& camera : r.cameras)
        cameras.append(
            QJsonObject{{QStringLiteral("name"), camera.name},
                        {QStringLiteral("serial"), camera.serial},
                        {QStringLiteral("exposures"), camera.exposures},
                        {QStringLiteral("firstShutterCount"), numberJson(camera.firstShutterCount)},
                        {QStringLiteral("lastShutterCount"), numberJson(camera.lastShutterCount)},
                        {QStringLiteral("firstImageNumber"), numberJson(camera.firstImageNumber)},
                        {QStringLiteral("lastImageNumber"), numberJson(camera.lastImageNumber)}});
    QJsonArray lenses;
    for (const LensUse& lens : r.lenses)
        lenses.append(QJsonObject{{QStringLiteral("name"), lens.name},
                                  {QStringLiteral("serial"), lens.serial},
                                  {QStringLiteral("exposures"), lens.exposures}});
    return {{QStringLiteral("cameras"), cameras},
            {QStringLiteral("lenses"), lenses},
            {QStringLiteral("focalLengths"), countsJson(r.focalLengths)},
            {QStringLiteral("focalLengthsAre35mm"), r.focalLengthsAre35mm},
            {QStringLiteral("focalLengthUnknown"), r.focalLengthUnknown},
            {QStringLiteral("isos"), countsJson(r.isos)},
            {QStringLiteral("apertures"), countsJson(r.apertures)},
            {QStringLiteral("shutterSpeeds"), countsJson(r.shutterSpeeds)},
            {QStringLiteral("flash"), QJsonObject{{QStringLiteral("fired"), r.flashFired},
                                                  {QStringLiteral("notFired"), r.flashNotFired},
                                                  {QStringLiteral("unknown"), r.flashUnknown}}}};
}

QJsonObject cullingJson(const ShootingReport& r)
{
    QJsonObject colours;
    for (auto it = r.taggedByColour.begin(); it != r.taggedByColour.end(); ++it)
        colours.insert(it.key(), it.value());
    QJsonObject ratings;
    for (auto it = r.ratings.begin(); it != r.ratings.end(); ++it)
        ratings.insert(it.key() == -1 ? QStringLiteral("rejected") : QString::number(it.key()), it.value());
    return {{QStringLiteral("kept"), r.kept},
            {QStringLiteral("tagged"), r.tagged},
            {QStringLiteral("taggedByColour"), colours},
            {QStringLiteral("hasRatings"), r.hasRatings},
            {QStringLiteral("rated"), r.rated},
            {QStringLiteral("ratings"), ratings},
            {QStringLiteral("deletedThisSession"),
             r.deletedThisSession ? QJsonValue(*r.deletedThisSession) : QJsonValue()}};
}

} // namespace

QJsonObject reportToJson(const ShootingReport& r)
{
    return {{QStringLiteral("folder"), r.folder},
            {QStringLiteral("deep"), r.deep},
            {QStringLiteral("files"), r.files},
            {QStringLiteral("unreadable"), r.unreadable},
            {QStringLiteral("exposures"), r.exposures},
            {QStringLiteral("pairedExposures"), r.pairedExposures},
            {QStringLiteral("exposuresWithoutTime"), r.exposuresWithoutTime},
            {QStringLiteral("pace"), paceJson(r)},
            {QStringLiteral("orientation"), QJsonObject{{QStringLiteral("landscape"), r.landscape},
                                                        {QStringLiteral("portrait"), r.portrait},
                                                        {QStringLiteral("square"), r.square},
                                                        {QStringLiteral("unknown"), r.orientationUnknown}}},
            {QStringLiteral("gear"), gearJson(r)},
            {QStringLiteral("culling"), cullingJson(r)}};
}

} // namespace lumaro::report
